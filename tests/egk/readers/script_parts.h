#pragma once

#include <QByteArray>

#include <string>
#include <utility>
#include <vector>

namespace kartocheck::test {

// One command of a read, or the pieces of a block, with the answers.
struct ScriptPart {
  std::string name;
  std::string section;
  std::string script;
};

// The dialogue of an intact read, from which tables make those of reads that fail at a place.
class ScriptParts {
 public:
  explicit ScriptParts(std::vector<ScriptPart> parts) : parts_(std::move(parts)) {}

  // Gives the first command of a part other answers: "< 69 82", or more lines behind it.
  [[nodiscard]] ScriptParts Answering(const std::string& part, const std::string& answers) const;
  // Gives a part another script.
  [[nodiscard]] ScriptParts Replacing(const std::string& part, const std::string& script) const;
  // Leaves out what follows a part: in its section, or altogether.
  [[nodiscard]] ScriptParts WithoutRestOfSection(const std::string& part) const;
  [[nodiscard]] ScriptParts WithoutRest(const std::string& part) const;

  [[nodiscard]] bool Has(const std::string& part) const;
  [[nodiscard]] const std::string& SectionOf(const std::string& part) const;
  [[nodiscard]] std::string Text() const;

 private:
  [[nodiscard]] std::size_t IndexOf(const std::string& part) const;

  std::vector<ScriptPart> parts_;
};

// READ BINARY of so many bytes from the offset on.
[[nodiscard]] std::string CommandAt(qsizetype offset, qsizetype count);

// The commands that read a block of a selected file from the offset on, in pieces of at most 252
// bytes, and the answers.
[[nodiscard]] std::string BlockScript(int offset, const QByteArray& block);

// A command and its answer: bytes and status word.
[[nodiscard]] std::string Exchange(const std::string& command, const QByteArray& data,
                                   const char* statusWord = "9000");

// A card's read. Parts: Reset, Gdo, VdHca, VdSelect, VdOffsets, VdBlock, PdHca, PdSelect, PdLength,
// PdBlock, GvdHca, GvdSelect, GvdOffsets, GvdBlock (or EfGvdSelect, EfGvdLength, EfGvdBlock),
// StatusHca, StatusSelect, StatusRead. Sections: Card, Vd, Pd, Gvd, Status.
[[nodiscard]] ScriptParts CardScript();
[[nodiscard]] ScriptParts CardScriptWithEfGvd();

// A stored record's read. Parts and sections: Hca, StatusVd, Pd, Vd, Gvd (with the extended
// record), Erase, Eject.
[[nodiscard]] ScriptParts PlainRecordScript();
[[nodiscard]] ScriptParts ExtendedRecordScript();

// The status data of the two kinds of records, made apart from the program.
[[nodiscard]] QByteArray PlainStatusRecord();
[[nodiscard]] QByteArray ExtendedStatusRecord();

}  // namespace kartocheck::test
