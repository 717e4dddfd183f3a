#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>
#include <string>

#include "console/console_fixture.h"
#include "diagnosis/port_hints.h"
#include "support/fake_port_directory.h"
#include "support/printing.h"

// What the console says where a port or a reader cannot be used.

namespace kartocheck::test {
namespace {

const QString FirstHint = PortHint(NotPermitted);
const QString SecondHint = PortHint(NoService);

QJsonObject Report(const Console& console) {
  return QJsonDocument::fromJson(QByteArray::fromStdString(console.out.str())).object();
}

QJsonArray Hints(const Console& console) {
  const QJsonObject report = Report(console);
  EXPECT_TRUE(report.value(u"hints").isArray());
  return report.value(u"hints").toArray();
}

QString PortHint(const Console& console, const QString& pn) {
  const QJsonValue hint = Report(console).value(u"ports")[pn][u"hint"];
  EXPECT_TRUE(hint.isString()) << pn.toStdString();
  return hint.toString();
}

TEST(ConsoleHintTest, WithoutAReaderTheTableEndsWithTheReasons) {
  FakePortDirectory machine;
  machine.troublesWithoutReader = {NotPermitted, NoService};
  Console console(machine);
  EXPECT_EQ(console.Run(), exit_status::NoTerminal);
  const std::string out = console.out.str();
  EXPECT_TRUE(out.ends_with("  Hinweis:                        " + FirstHint.toStdString() +
                            "\n  Hinweis:                        " + SecondHint.toStdString() +
                            '\n'))
      << out;
  EXPECT_GT(out.find("Hinweis:"), out.find("\nSchnittstellen\n"));
}

TEST(ConsoleHintTest, TheReasonsAreAListInTheDocument) {
  FakePortDirectory machine;
  machine.troublesWithoutReader = {NotPermitted, NoService};
  Console console(machine);
  (void)console.Run({.json = true});
  EXPECT_EQ(Hints(console), (QJsonArray{FirstHint, SecondHint}));
}

TEST(ConsoleHintTest, ATerminalOnASerialPortIsNoReader) {
  FakePortDirectory machine;
  machine.troublesWithoutReader = {NoService};
  Console console(machine);
  console.practice.Attach(1, PortOf("kvk-60"));
  console.practice.Attach(7, PortOf("kvk-60"));
  EXPECT_EQ(console.Run({.json = true}), exit_status::DataRead);
  EXPECT_EQ(Hints(console), QJsonArray{SecondHint});
}

TEST(ConsoleHintTest, WithAReaderThereIsNothingToSay) {
  FakePortDirectory machine;
  machine.troublesWithoutReader = {NotPermitted, NoService};
  for (const bool json : {false, true}) {
    Console console(machine);
    console.practice.Attach(8192, PortOf("keine-karte"));
    (void)console.Run({.json = json});
    EXPECT_EQ(console.out.str().find("Hinweis"), std::string::npos);
    if (json) {
      EXPECT_EQ(Hints(console), QJsonArray());
    }
  }
}

TEST(ConsoleHintTest, WithoutASweepNothingIsSaidOfReaders) {
  FakePortDirectory machine;
  machine.troublesWithoutReader = {NotPermitted, NoService};
  Console console(machine);
  (void)console.Run({.json = true, .port = Port(8192)});
  EXPECT_EQ(Hints(console), QJsonArray());
}

TEST(ConsoleHintTest, SimulatedPortsNeedNoHint) {
  Console console;
  (void)console.Run({.json = true});
  EXPECT_EQ(Hints(console), QJsonArray());
}

TEST(ConsoleHintTest, APortThatCannotBeUsedHasItsReason) {
  FakePortDirectory machine;
  machine.troubles = {{2, NotPermitted}, {8192, NoService}};
  Console console(machine);
  console.practice.Attach(8192, PortOf("keine-karte"));
  console.practice.Attach(8193, PortOf("keine-karte"));
  (void)console.Run({.json = true});
  EXPECT_EQ(PortHint(console, QStringLiteral("1")), QString());
  EXPECT_EQ(PortHint(console, QStringLiteral("2")), FirstHint);
  EXPECT_EQ(PortHint(console, QStringLiteral("8192")), SecondHint);
  EXPECT_EQ(PortHint(console, QStringLiteral("8193")), QString());

  Console text(machine);
  text.practice.Attach(8192, PortOf("keine-karte"));
  (void)text.Run();
  const std::string out = text.out.str();
  const std::size_t reader = out.find("USB Device 1 (CTAPI pn=8192)\n");
  ASSERT_NE(reader, std::string::npos);
  EXPECT_NE(
      out.find("  Hinweis:                        " + SecondHint.toStdString() + "\n\n", reader),
      std::string::npos)
      << out;
}

TEST(ConsoleHintTest, APortThatWasReadNeedsNone) {
  FakePortDirectory machine;
  machine.troubles = {{8192, NoService}};
  Console console(machine);
  console.practice.Attach(8192, PortOf("omega"));
  EXPECT_EQ(console.Run({.json = true, .port = Port(8192)}), exit_status::DataRead);
  EXPECT_EQ(PortHint(console, QStringLiteral("8192")), QString());
}

TEST(ConsoleHintTest, BeforeTheCardIsAskedForTheReasonStandsAmongTheMessages) {
  FakePortDirectory machine;
  machine.troubles = {{8192, NoService}};
  Console console(machine);
  console.practice.Attach(8192, PortOf("keine-karte"));
  (void)console.Run({.port = Port(8192)});
  EXPECT_NE(
      console.messages.str().find('\n' + SecondHint.toStdString() + "\nKartoCheck: Bitte eine "),
      std::string::npos)
      << console.messages.str();
}

}  // namespace
}  // namespace kartocheck::test
