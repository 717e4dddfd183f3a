#include "console/json_report.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sstream>

#include "fuzz/byte_source.h"
#include "fuzz/fuzz_input.h"

// A report whose texts are the input. Input: a byte of flags (1 data, 2 of an eGK, 4 complete),
// then the texts in the order in which they are asked for, each as a byte with its length and as
// UTF-8. The report is one JSON document that says the same texts, those of a card without blanks
// around them, without a control character in it.

namespace kartocheck {
namespace {

using fuzz::Require;

class Texts {
 public:
  explicit Texts(fuzz::ByteSource& source) : source_(source) {}

  QString Next() {
    const auto bytes = source_.Bytes(source_.Byte());
    return QString::fromUtf8(reinterpret_cast<const char*>(bytes.data()),
                             static_cast<qsizetype>(bytes.size()));
  }

 private:
  fuzz::ByteSource& source_;
};

PortReport ReportOf(std::uint8_t flags, Texts& texts) {
  PortReport report;
  report.terminal.Answered = true;
  report.terminal.DataRead = (flags & 1) != 0;
  report.terminal.EgkData = (flags & 2) != 0;
  report.identification = texts.Next();
  report.hint = texts.Next();
  report.messages = {
      {.title = texts.Next(), .text = texts.Next()},
      {.icon = Icon::Question, .title = {}, .text = texts.Next(), .isQuestion = true}};
  report.terminal.ModelName = texts.Next();
  report.entry.PortText = texts.Next();
  for (const ElementDescription& element : ElementTable) {
    report.insured[element.Which] = texts.Next();
  }
  report.egk.iccsn = texts.Next();
  for (const VsdKind kind : {VsdKind::Pd, VsdKind::Vd, VsdKind::Gvd}) {
    VsdDocument& document = report.egk.documents[kind];
    document.validationText = texts.Next();
    document.fields[0] = {.name = texts.Next(), .value = texts.Next()};
    document.fields[5] = {.name = texts.Next(), .value = texts.Next()};
  }
  report.egk.stored.approvalNumber = texts.Next();
  return report;
}

void RequireText(const QJsonValue& found, const QString& expected) {
  Require(found.isString() && found.toString() == expected, "a text is told unchanged");
}

void RequireFields(const QJsonObject& document, const VsdDocument& expected) {
  RequireText(document[u"validation"], expected.validationText.trimmed());
  const QJsonArray fields = document[u"fields"].toArray();
  qsizetype position = 0;
  for (const VsdField& field : expected.fields) {
    if (field.IsEmpty()) continue;
    const QJsonObject object = fields[position++].toObject();
    RequireText(object[u"name"], field.name.trimmed());
    RequireText(object[u"value"], field.value.trimmed());
  }
  Require(position == fields.size(), "every field is told once");
}

void RequireEgk(const QJsonValue& value, const EgkData& expected) {
  Require(value.isNull() == expected.IsEmpty(), "an empty eGK is told as none");
  if (expected.IsEmpty()) return;
  const QJsonObject egk = value.toObject();
  RequireText(egk[u"iccsn"], expected.iccsn.trimmed());
  RequireText(egk[u"storedApproval"], expected.stored.approvalNumber.trimmed());
  RequireFields(egk[u"pd"].toObject(), expected.documents[VsdKind::Pd]);
  RequireFields(egk[u"vd"].toObject(), expected.documents[VsdKind::Vd]);
  RequireFields(egk[u"gvd"].toObject(), expected.documents[VsdKind::Gvd]);
}

void RequirePort(const QJsonObject& port, const PortReport& expected) {
  RequireText(port[u"device"], expected.identification.trimmed());
  RequireText(port[u"hint"], expected.hint);
  RequireText(port[u"terminal"][u"model"], expected.terminal.ModelName.Trimmed());
  RequireText(port[u"port"][u"text"], expected.entry.PortText.Trimmed());
  const QJsonArray messages = port[u"messages"].toArray();
  Require(messages.size() == 2, "every message is told");
  RequireText(messages[0][u"title"], expected.messages[0].title.trimmed());
  RequireText(messages[0][u"text"], expected.messages[0].text);
  RequireText(messages[1][u"text"], expected.messages[1].text);
  Require(port[u"data"].isNull() == !expected.terminal.DataRead, "data are told where there are");
  if (expected.terminal.DataRead) {
    for (const ElementDescription& element : ElementTable) {
      const QLatin1String key(element.Key.data(), static_cast<qsizetype>(element.Key.size()));
      RequireText(port[u"data"][u"elements"][key], expected.insured[element.Which].trimmed());
    }
  }
  RequireEgk(port[u"egk"], expected.egk);
}

void RequireNoControls(const std::string& written) {
  for (const QChar character : QString::fromStdString(written)) {
    const bool isControl = character.category() == QChar::Other_Control;
    Require(!isControl || character == u'\n', "no control character reaches the output");
  }
}

void Write(fuzz::ByteSource& source) {
  const std::uint8_t flags = source.Byte();
  Texts texts(source);
  RunReport run;
  run.hints = {texts.Next(), texts.Next()};
  run.isComplete = (flags & 4) != 0;
  run.ports = {ReportOf(flags, texts), ReportOf(static_cast<std::uint8_t>(~flags), texts)};
  run.ports[1].port = Port(8192);

  std::ostringstream out;
  JsonReport writer(out);
  writer.Begin();
  for (const PortReport& port : run.ports) writer.Add(port);
  writer.End(run);

  RequireNoControls(out.str());
  const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(out.str()));
  Require(document.isObject(), "the report is one document");
  const QJsonObject ports = document[u"ports"].toObject();
  Require(ports.size() == 2, "every port is told");
  RequirePort(ports[u"1"].toObject(), run.ports[0]);
  RequirePort(ports[u"8192"].toObject(), run.ports[1]);
  Require(document[u"hints"] == QJsonArray::fromStringList(run.hints), "the hints are told");
  Require(document[u"complete"] == run.isComplete, "its end is told");
}

}  // namespace
}  // namespace kartocheck

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kartocheck::fuzz::ByteSource source(data, size);
  kartocheck::Write(source);
  return 0;
}
