#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include "console/console_fixture.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

QJsonObject Parsed(const Console& console) {
  QJsonParseError error;
  const QJsonDocument document =
      QJsonDocument::fromJson(QByteArray::fromStdString(console.out.str()), &error);
  EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
  EXPECT_TRUE(document.isObject());
  return document.object();
}

QJsonObject At(const QJsonObject& object, const char* key) {
  EXPECT_TRUE(object.value(QLatin1StringView(key)).isObject()) << key;
  return object.value(QLatin1StringView(key)).toObject();
}

QString Text(const QJsonObject& object, const char* key) {
  EXPECT_TRUE(object.value(QLatin1StringView(key)).isString()) << key;
  return object.value(QLatin1StringView(key)).toString();
}

bool Flag(const QJsonObject& object, const char* key) {
  EXPECT_TRUE(object.value(QLatin1StringView(key)).isBool()) << key;
  return object.value(QLatin1StringView(key)).toBool();
}

TEST(JsonReportTest, AFullScanIsOneDocumentWithAnEntryAPort) {
  QCoreApplication::setApplicationVersion(QStringLiteral("1.2.3"));
  Console console;
  console.practice.Attach(1, PortOf("praxis", 1));
  console.practice.Attach(2, PortOf("praxis", 2));
  console.practice.Attach(3, PortOf("praxis", 3));
  console.practice.Attach(8192, PortOf("praxis", 8192));
  EXPECT_EQ(console.Run({.json = true}), exit_status::DataRead);
  const QJsonObject report = Parsed(console);
  EXPECT_EQ(Text(report, "program"), u"KartoCheck");
  EXPECT_EQ(Text(report, "version"), u"1.2.3");
  const QJsonObject ports = At(report, "ports");
  EXPECT_EQ(ports.keys(),
            (QStringList{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"),
                         QStringLiteral("4"), QStringLiteral("8192")}));
  QCoreApplication::setApplicationVersion(QString());

  const QJsonObject kvk = At(ports, "2");
  EXPECT_EQ(Text(At(kvk, "port"), "text"), u"Ist verfügbar!");
  EXPECT_EQ(Text(At(kvk, "port"), "available"), u"9600 Baud");
  EXPECT_EQ(Text(At(kvk, "port"), "baud"), u"9600");
  EXPECT_EQ(At(kvk, "port").value(u"result").toInt(-1), 0);
  EXPECT_TRUE(Flag(At(kvk, "terminal"), "answered"));
  EXPECT_EQ(Text(At(kvk, "terminal"), "model"), u"Serie Omega");
  EXPECT_EQ(Text(At(kvk, "terminal"), "productCode"), u"PKTO");
  EXPECT_EQ(Text(At(kvk, "data"), "card"), u"kvk");
  EXPECT_EQ(Text(At(kvk, "data"), "source"), u"card");
  EXPECT_EQ(Text(At(At(kvk, "data"), "elements"), "lastName"), u"Übermaß");
  EXPECT_EQ(Text(At(At(kvk, "data"), "elements"), "status"), u"5000");
  EXPECT_EQ(At(At(kvk, "data"), "elements").size(), ElementCount);
  EXPECT_TRUE(kvk.value(u"egk").isNull());
  EXPECT_TRUE(kvk.value(u"messages").toArray().isEmpty());

  const QJsonObject egk = At(ports, "1");
  EXPECT_EQ(Text(At(egk, "data"), "card"), u"egk");
  EXPECT_EQ(Text(At(egk, "egk"), "iccsn").size(), 20);
  EXPECT_FALSE(At(At(egk, "egk"), "pd").value(u"fields").toArray().isEmpty());
  EXPECT_FALSE(Flag(At(At(egk, "egk"), "pd"), "validated"));

  const QJsonObject mobile = At(ports, "3");
  EXPECT_TRUE(Flag(At(mobile, "terminal"), "mobile"));
  EXPECT_TRUE(Flag(At(mobile, "terminal"), "mobileExtended"));
  EXPECT_TRUE(mobile.value(u"data").isNull());
  const QJsonArray messages = mobile.value(u"messages").toArray();
  ASSERT_EQ(messages.size(), 1);
  EXPECT_EQ(Text(messages[0].toObject(), "icon"), u"question");
  EXPECT_EQ(Text(messages[0].toObject(), "title"), u"KartoCheck");
  EXPECT_EQ(Text(messages[0].toObject(), "answer"), u"no");
  EXPECT_TRUE(Text(messages[0].toObject(), "text").startsWith(u" Achtung, Lesetest"));

  EXPECT_EQ(At(At(ports, "4"), "port").value(u"result").toInt(-1), 1);
  EXPECT_EQ(Text(At(ports, "8192"), "device"), u"USB\\VID_FFFE&PID_0001\\SIM0001");
  EXPECT_EQ(Text(At(At(ports, "8192"), "port"), "text"), u"USB (CTAPI pn=8192)");
}

TEST(JsonReportTest, APromptIsAMessageWithTheAnswerCancel) {
  Console console;
  console.practice.Attach(1, PortOf("keine-karte"));
  EXPECT_EQ(console.Run({.json = true, .port = Port(1)}), exit_status::NoData);
  const QJsonArray messages = At(At(Parsed(console), "ports"), "1").value(u"messages").toArray();
  ASSERT_EQ(messages.size(), 1);
  EXPECT_EQ(Text(messages[0].toObject(), "icon"), u"exclamation");
  EXPECT_EQ(Text(messages[0].toObject(), "answer"), u"cancel");
}

TEST(JsonReportTest, AMessageWithoutAQuestionHasNoAnswer) {
  Console console;
  console.practice.Attach(1, PortOf("keine-datensaetze"));
  (void)console.Run({.json = true, .port = Port(1)});
  const QJsonArray messages = At(At(Parsed(console), "ports"), "1").value(u"messages").toArray();
  ASSERT_FALSE(messages.isEmpty());
  EXPECT_EQ(Text(messages[0].toObject(), "icon"), u"critical");
  EXPECT_EQ(Text(messages[0].toObject(), "text"), u" Es sind keine Datensätze gespeichert! \r\n");
  EXPECT_FALSE(messages[0].toObject().contains(u"answer"));
}

TEST(JsonReportTest, AReadRecordOfAMobileTerminal) {
  Console console(StoredRecords::Erase);
  console.practice.Attach(1, PortOf("kvk-gespeichert"));
  EXPECT_EQ(console.Run({.json = true, .port = Port(1)}), exit_status::DataRead);
  const QJsonObject port = At(At(Parsed(console), "ports"), "1");
  EXPECT_EQ(Text(At(port, "data"), "source"), u"record");
  EXPECT_FALSE(Text(At(At(port, "data"), "elements"), "readingDate").isEmpty());
  EXPECT_EQ(Text(port.value(u"messages").toArray().at(0).toObject(), "answer"), u"yes");
}

void ExpectTrimmed(const QJsonValue& value, const QString& path) {
  if (value.isString()) {
    EXPECT_EQ(value.toString(), value.toString().trimmed()) << path.toStdString();
  }
  for (const QJsonValue& part : value.toArray()) ExpectTrimmed(part, path + u"[]");
  const QJsonObject object = value.toObject();
  for (auto part = object.begin(); part != object.end(); ++part) {
    // A box has its text to the blank.
    if (path.endsWith(u"/messages[]") && part.key() == u"text") continue;
    ExpectTrimmed(part.value(), path + u'/' + part.key());
  }
}

// These leave blanks at the ends of the street, of a title, of an address supplement and of the
// names of fields.
TEST(JsonReportTest, ValuesHaveNoBlanksAroundThem) {
  for (const char* scenario : {"egk-beispiel", "egk-hoechstlaengen", "egk-gespeichert-erweitert",
                               "egk-abrechnend", "kvk-fest219"}) {
    SCOPED_TRACE(scenario);
    Console console(StoredRecords::Erase);
    console.practice.Attach(1, PortOf(scenario));
    EXPECT_EQ(console.Run({.json = true, .port = Port(1)}), exit_status::DataRead);
    ExpectTrimmed(Parsed(console), QString());
  }
}

TEST(ConsoleTextReportTest, LinesHaveNoBlanksAtTheirEnds) {
  Console console;
  console.practice.Attach(1, PortOf("egk-hoechstlaengen"));
  EXPECT_EQ(console.Run({.port = Port(1)}), exit_status::DataRead);
  const std::string out = console.out.str();
  // The heading ends with the version, which a test has none of.
  EXPECT_EQ(out.find(" \n", out.find("\n\n")), std::string::npos) << out;
}

// Escaped for the terminal, but the same text for a program.
TEST(JsonReportTest, ControlCharactersComeThroughAProgramUnchanged) {
  Console console;
  ctapi::SimulatedPort port;
  port.DeviceId = "A\x1B\x7F\xC2\x9B\xC2\x80\\ \"\u00fc";
  console.practice.Attach(1, port);
  (void)console.Run({.json = true, .port = Port(1)});
  EXPECT_EQ(Text(At(At(Parsed(console), "ports"), "1"), "device"),
            QString::fromUtf8("A\x1B\x7F\xC2\x9B\xC2\x80\\ \"\u00fc"));
  EXPECT_NE(console.out.str().find("A\\u001b\\u007f\\u009b\\u0080\\\\ \\\"\u00fc"),
            std::string::npos)
      << console.out.str();
}

TEST(JsonReportTest, AnEmptyPracticeIsADocumentToo) {
  Console console;
  EXPECT_EQ(console.Run({.json = true}), exit_status::NoTerminal);
  const QJsonObject ports = At(Parsed(console), "ports");
  EXPECT_EQ(ports.size(), 4);
  for (const QString& key : ports.keys()) {
    EXPECT_TRUE(ports.value(key).toObject().value(u"data").isNull());
    EXPECT_FALSE(Flag(At(ports.value(key).toObject(), "terminal"), "answered"));
    EXPECT_EQ(Text(ports.value(key).toObject(), "hint"), QString());
  }
}

}  // namespace
}  // namespace kartocheck::test
