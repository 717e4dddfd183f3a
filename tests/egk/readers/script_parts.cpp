#include "egk/readers/script_parts.h"

#include <algorithm>
#include <stdexcept>

#include "egk/readers/sample_documents.h"

namespace kartocheck::test {

namespace {

std::string HexText(const QByteArray& bytes) {
  return bytes.toHex().toUpper().toStdString();
}

// "> command", the line that a changed answer keeps.
std::string FirstLine(const std::string& script) {
  return script.substr(0, script.find('\n') + 1);
}

constexpr const char* SelectHca = "00A4040C06D27600000102";
constexpr const char* SelectEfVd = "00A4020C02D002";
constexpr int FirstOfVd = 8;

QByteArray VdBlock() {
  return Compressed(VdDocument(), 500);
}

QByteArray PdBlock() {
  return Compressed(PdDocument(), 600);
}

QByteArray GvdBlock() {
  return Compressed(GvdDocument(), 300);
}

std::vector<ScriptPart> CardParts(bool gvdInContainer) {
  const QByteArray vd = VdBlock();
  const QByteArray pd = PdBlock();
  const QByteArray gvd = GvdBlock();
  const QByteArray container = Container(vd, gvdInContainer ? gvd : QByteArray());
  std::vector<ScriptPart> parts{
      {"Reset", "Card", Exchange("20110100", {}, "9001")},
      {"Gdo", "Card", Exchange("00B0820000", Gdo())},
      {"VdHca", "Vd", Exchange(SelectHca, {})},
      {"VdSelect", "Vd", Exchange(SelectEfVd, {})},
      {"VdOffsets", "Vd", Exchange("00B0000004", container.mid(0, 4))},
      {"VdBlock", "Vd", BlockScript(FirstOfVd, vd)},
      {"PdHca", "Pd", Exchange(SelectHca, {})},
      {"PdSelect", "Pd", Exchange("00A4020C02D001", {})},
      {"PdLength", "Pd", Exchange("00B0000002", FileWithLength(pd).first(2))},
      {"PdBlock", "Pd", BlockScript(2, pd)},
      {"GvdHca", "Gvd", Exchange(SelectHca, {})},
      {"GvdSelect", "Gvd", Exchange(SelectEfVd, {})},
      {"GvdOffsets", "Gvd", Exchange("00B0000404", container.mid(4, 4))},
  };
  if (gvdInContainer) {
    parts.push_back({"GvdBlock", "Gvd", BlockScript(FirstOfVd + static_cast<int>(vd.size()), gvd)});
  } else {
    parts.push_back({"EfGvdSelect", "Gvd", Exchange("00A4020C02D003", {})});
    parts.push_back({"EfGvdLength", "Gvd", Exchange("00B0000002", FileWithLength(gvd).first(2))});
    parts.push_back({"EfGvdBlock", "Gvd", BlockScript(2, gvd)});
  }
  parts.push_back({"StatusHca", "Status", Exchange(SelectHca, {})});
  parts.push_back({"StatusSelect", "Status", Exchange("00A4020C02D00C", {})});
  parts.push_back({"StatusRead", "Status", Exchange("00B0000019", StatusVd())});
  return parts;
}

std::vector<ScriptPart> RecordParts(bool extended) {
  const QByteArray gvd = GvdBlock();
  const QByteArray status = extended ? ExtendedStatusRecord() : PlainStatusRecord();
  std::vector<ScriptPart> parts{
      {"Hca", "Hca", Exchange(SelectHca, {})},
      {"StatusVd", "StatusVd", Exchange("00B08C0000", status)},
      {"Pd", "Pd", Exchange("00B0810000", FileWithLength(PdBlock()))},
      {"Vd", "Vd", Exchange("00B0820000", Container(VdBlock(), extended ? QByteArray() : gvd))},
  };
  if (extended) {
    parts.push_back({"Gvd", "Gvd", Exchange("00B0830000", FileWithLength(gvd))});
  }
  parts.push_back({"Erase", "Erase", Exchange("000E0000", {})});
  parts.push_back({"Eject", "Eject", Exchange("201501000100", {})});
  return parts;
}

}  // namespace

std::size_t ScriptParts::IndexOf(const std::string& part) const {
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    if (parts_[i].name == part) return i;
  }
  throw std::invalid_argument("no part " + part);
}

bool ScriptParts::Has(const std::string& part) const {
  return std::any_of(parts_.begin(), parts_.end(),
                     [&part](const ScriptPart& each) { return each.name == part; });
}

const std::string& ScriptParts::SectionOf(const std::string& part) const {
  return parts_[IndexOf(part)].section;
}

ScriptParts ScriptParts::Answering(const std::string& part, const std::string& answers) const {
  ScriptParts changed = *this;
  std::string& script = changed.parts_[IndexOf(part)].script;
  script = FirstLine(script) + answers + '\n';
  return changed;
}

ScriptParts ScriptParts::Replacing(const std::string& part, const std::string& script) const {
  ScriptParts changed = *this;
  changed.parts_[IndexOf(part)].script = script;
  return changed;
}

ScriptParts ScriptParts::WithoutRestOfSection(const std::string& part) const {
  ScriptParts changed = *this;
  const std::string section = SectionOf(part);
  const auto behind = changed.parts_.begin() + static_cast<std::ptrdiff_t>(IndexOf(part)) + 1;
  const auto next = std::find_if(behind, changed.parts_.end(), [&section](const ScriptPart& each) {
    return each.section != section;
  });
  changed.parts_.erase(behind, next);
  return changed;
}

ScriptParts ScriptParts::WithoutRest(const std::string& part) const {
  ScriptParts changed = *this;
  changed.parts_.resize(IndexOf(part) + 1);
  return changed;
}

std::string ScriptParts::Text() const {
  std::string text;
  for (const ScriptPart& part : parts_) text += part.script;
  return text;
}

std::string Exchange(const std::string& command, const QByteArray& data, const char* statusWord) {
  return "> " + command + "\n< " + HexText(data) + statusWord + "\n";
}

std::string CommandAt(qsizetype offset, qsizetype count) {
  return HexText(QByteArray::fromHex("00B0") + Number(static_cast<int>(offset)) +
                 static_cast<char>(count));
}

std::string BlockScript(int offset, const QByteArray& block) {
  constexpr qsizetype PieceSize = 252;
  if (block.size() == PieceSize + 1) throw std::invalid_argument("253 bytes come at once");
  std::string script;
  for (qsizetype from = 0; from < block.size(); from += PieceSize) {
    const QByteArray piece = block.mid(from, PieceSize);
    script += Exchange(CommandAt(offset + from, piece.size()), piece);
  }
  return script;
}

ScriptParts CardScript() {
  return ScriptParts(CardParts(true));
}

ScriptParts CardScriptWithEfGvd() {
  return ScriptParts(CardParts(false));
}

ScriptParts PlainRecordScript() {
  return ScriptParts(RecordParts(false));
}

ScriptParts ExtendedRecordScript() {
  return ScriptParts(RecordParts(true));
}

QByteArray PlainStatusRecord() {
  return QByteArray::fromHex(
      "A01930323032353034303731303130353800500200000030000004910830353033323032"
      "34921B44454E52563B44454D4F5445524D3B312E322E333A342E352E362093013F");
}

QByteArray ExtendedStatusRecord() {
  return QByteArray::fromHex(
      "A01930323032353034303731303130353800500200000030000004910830353033323032"
      "34922644454E52563B44454D4F5445524D3B3030312E3030322E3030333A3030342E3030"
      "352E303036930122");
}

}  // namespace kartocheck::test
