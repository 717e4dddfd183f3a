#include "console/json_report.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <ostream>
#include <string>

namespace kartocheck {

namespace {

QString IconName(Icon icon) {
  switch (icon) {
    case Icon::Information:
      return QStringLiteral("information");
    case Icon::Question:
      return QStringLiteral("question");
    case Icon::Exclamation:
      return QStringLiteral("exclamation");
    case Icon::Critical:
      return QStringLiteral("critical");
  }
  return {};
}

QString AnswerName(Answer answer) {
  switch (answer) {
    case Answer::Ok:
      return QStringLiteral("ok");
    case Answer::Cancel:
      return QStringLiteral("cancel");
    case Answer::Yes:
      return QStringLiteral("yes");
    case Answer::No:
      return QStringLiteral("no");
  }
  return {};
}

QJsonObject PortJson(const PortEntry& port) {
  return {
      {QStringLiteral("text"), port.PortText.Trimmed()},
      {QStringLiteral("available"), port.AvailText.Trimmed()},
      {QStringLiteral("baud"), port.BaudText.Trimmed()},
      {QStringLiteral("result"), port.ScanResult},
  };
}

QJsonObject TerminalJson(const TerminalInfo& terminal) {
  return {
      {QStringLiteral("answered"), terminal.Answered},
      {QStringLiteral("model"), terminal.ModelName.Trimmed()},
      {QStringLiteral("manufacturerId"), terminal.ManufacturerId.Trimmed()},
      {QStringLiteral("productCode"), terminal.ProductCode.Trimmed()},
      {QStringLiteral("softwareVersion"), terminal.SoftwareVersion.Trimmed()},
      {QStringLiteral("outputMedium"), terminal.DisplayText.Trimmed()},
      {QStringLiteral("mobile"), terminal.Reset95},
      {QStringLiteral("mobileExtended"), terminal.Reset9501},
      {QStringLiteral("usbVirtualCom"), terminal.UsbVirtualCom},
  };
}

QLatin1String KeyOf(const ElementDescription& element) {
  return {element.Key.data(), static_cast<qsizetype>(element.Key.size())};
}

QJsonValue DataJson(const PortReport& report) {
  if (!report.terminal.DataRead) return QJsonValue::Null;
  QJsonObject elements;
  for (const ElementDescription& element : ElementTable) {
    elements.insert(KeyOf(element), report.insured[element.Which].trimmed());
  }
  return QJsonObject{
      {QStringLiteral("card"),
       report.terminal.EgkData ? QStringLiteral("egk") : QStringLiteral("kvk")},
      {QStringLiteral("source"),
       report.terminal.IsMobile() ? QStringLiteral("record") : QStringLiteral("card")},
      {QStringLiteral("elements"), elements},
  };
}

QJsonObject DocumentJson(const VsdDocument& document) {
  QJsonArray fields;
  for (const VsdField& field : document.fields) {
    if (field.IsEmpty()) continue;
    fields.append(QJsonObject{{QStringLiteral("name"), field.name.trimmed()},
                              {QStringLiteral("value"), field.value.trimmed()}});
  }
  return {
      {QStringLiteral("validation"), document.validationText.trimmed()},
      {QStringLiteral("validated"), !document.notValidated},
      {QStringLiteral("fields"), fields},
  };
}

QJsonValue EgkJson(const EgkData& egk) {
  if (egk.IsEmpty()) return QJsonValue::Null;
  return QJsonObject{
      {QStringLiteral("iccsn"), egk.iccsn.trimmed()},
      {QStringLiteral("statusVd"), egk.statusText},
      {QStringLiteral("pd"), DocumentJson(egk.documents[VsdKind::Pd])},
      {QStringLiteral("vd"), DocumentJson(egk.documents[VsdKind::Vd])},
      {QStringLiteral("gvd"), DocumentJson(egk.documents[VsdKind::Gvd])},
      {QStringLiteral("storedStatus"), egk.stored.statusText},
      {QStringLiteral("storedDate"), egk.stored.storedDate.trimmed()},
      {QStringLiteral("storedApproval"), egk.stored.approvalNumber.trimmed()},
      {QStringLiteral("storedChecksum"), egk.stored.checksumText},
  };
}

QJsonArray MessagesJson(const std::vector<ReportedMessage>& messages) {
  QJsonArray array;
  for (const ReportedMessage& message : messages) {
    QJsonObject object{
        {QStringLiteral("icon"), IconName(message.icon)},
        {QStringLiteral("title"), message.title.trimmed()},
        {QStringLiteral("text"), message.text},
    };
    if (message.isQuestion) object.insert(QStringLiteral("answer"), AnswerName(message.answer));
    array.append(object);
  }
  return array;
}

QJsonObject ReportJson(const PortReport& report) {
  return {
      {QStringLiteral("port"), PortJson(report.entry)},
      {QStringLiteral("device"), report.identification.trimmed()},
      {QStringLiteral("hint"), report.hint},
      {QStringLiteral("terminal"), TerminalJson(report.terminal)},
      {QStringLiteral("data"), DataJson(report)},
      {QStringLiteral("egk"), EgkJson(report.egk)},
      {QStringLiteral("messages"), MessagesJson(report.messages)},
  };
}

// Control characters that JSON need not escape, but that drive a terminal (DEL and C1, ECMA-48).
QByteArray WithoutControls(const QByteArray& json) {
  QString text;
  for (const QChar character : QString::fromUtf8(json)) {
    if (character != u'\n' && character.category() == QChar::Other_Control) {
      text += QStringLiteral("\\u%1").arg(int{character.unicode()}, 4, 16, QLatin1Char('0'));
    } else {
      text += character;
    }
  }
  return text.toUtf8();
}

// A value as it stands behind its key, so far from the margin.
std::string Indented(const QJsonValue& value, int margin) {
  const bool isObject = value.isObject();
  const QJsonDocument document =
      isObject ? QJsonDocument(value.toObject()) : QJsonDocument(value.toArray());
  // Every line break is one between values: those of texts are escaped.
  const QByteArray lineBreak = '\n' + QByteArray(margin, ' ');
  return WithoutControls(document.toJson().trimmed()).replace('\n', lineBreak).toStdString();
}

std::string Quoted(const QString& text) {
  const std::string array = Indented(QJsonArray{text}, 0);
  const std::size_t begin = array.find('"');
  return array.substr(begin, array.rfind('"') + 1 - begin);
}

constexpr int PortMargin = 8;
constexpr int HintsMargin = 4;

}  // namespace

void JsonReport::Begin() {
  out_ << "{\n    \"program\": \"KartoCheck\",\n    \"version\": "
       << Quoted(QCoreApplication::applicationVersion()) << ",\n    \"ports\": {";
  HandOver(out_);
}

void JsonReport::Add(const PortReport& report) {
  out_ << (hasPorts_ ? "," : "") << "\n        \"" << report.port.Number()
       << "\": " << Indented(ReportJson(report), PortMargin);
  hasPorts_ = true;
  HandOver(out_);
}

void JsonReport::End(const RunReport& run) {
  out_ << "\n    },\n    \"hints\": "
       << Indented(QJsonArray::fromStringList(run.hints), HintsMargin)
       << ",\n    \"complete\": " << (run.isComplete ? "true" : "false") << "\n}\n";
  HandOver(out_);
}

}  // namespace kartocheck
