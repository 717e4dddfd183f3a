#include <QJsonDocument>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include "support/printing.h"

// The built program as it is called.

namespace kartocheck::test {
namespace {

constexpr int PatienceMs = 30'000;

struct Outcome {
  int status = -1;
  QByteArray out;
  QByteArray messages;
};

Outcome Call(const QStringList& arguments, const QByteArray& input = {}) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
  process.setProcessEnvironment(environment);
  process.start(QStringLiteral(KARTOCHECK_PROGRAM), arguments);
  process.write(input);
  process.closeWriteChannel();
  EXPECT_TRUE(process.waitForFinished(PatienceMs));
  EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
  return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QStringList Console(const QStringList& more) {
  return QStringList{QStringLiteral("--console")} + more;
}

TEST(ProgramTest, AScanOfTheBundledPractice) {
  const Outcome outcome = Call(Console({QStringLiteral("--simulate"), QStringLiteral("--json")}));
  EXPECT_EQ(outcome.status, 0);
  EXPECT_FALSE(QJsonDocument::fromJson(outcome.out).isNull()) << "standard output is one document";
  EXPECT_EQ(outcome.messages.count("Programm prüft "), 513) << "a line each without a terminal";
  EXPECT_FALSE(outcome.messages.contains('\r'));
}

TEST(ProgramTest, ExitStatusOfAnEmptyPractice) {
  EXPECT_EQ(Call(Console({QStringLiteral("--simulate"), QStringLiteral("leer"),
                          QStringLiteral("--port"), QStringLiteral("8192")}))
                .status,
            1);
}

TEST(ProgramTest, ExitStatusOfATerminalWithoutACard) {
  EXPECT_EQ(Call(Console({QStringLiteral("--simulate"), QStringLiteral("keine-karte"),
                          QStringLiteral("--port"), QStringLiteral("1")}))
                .status,
            2);
}

TEST(ProgramTest, ALibraryThatCannotBeUsedIsFatal) {
  const Outcome outcome =
      Call(Console({QStringLiteral("--ct-api"), QStringLiteral("/there/is/none.so"),
                    QStringLiteral("--port"), QStringLiteral("8192")}));
  EXPECT_EQ(outcome.status, 3);
  EXPECT_TRUE(outcome.messages.contains("Datei nicht gefunden, CTNRV32.dll !!!"));
}

TEST(ProgramTest, AScenarioThatDoesNotExistIsFatal) {
  const Outcome outcome = Call(Console({QStringLiteral("--simulate"), QStringLiteral("nirgends")}));
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.messages, QByteArray("Szenario nicht gefunden: nirgends\n"));
  EXPECT_TRUE(outcome.out.isEmpty());
}

TEST(ProgramTest, ASchemaDirectoryThatDoesNotExistIsFatal) {
  const Outcome outcome = Call(Console(
      {QStringLiteral("--simulate"), QStringLiteral("--schema-dir"), QStringLiteral("/nirgends")}));
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.messages, QByteArray("Ordner nicht gefunden: /nirgends\n"));
  EXPECT_TRUE(outcome.out.isEmpty());
}

TEST(ProgramTest, AWrongCallIsToldOnStandardError) {
  const Outcome outcome = Call({QStringLiteral("--port"), QStringLiteral("1")});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_TRUE(outcome.out.isEmpty());
  EXPECT_TRUE(outcome.messages.endsWith("\nHilfe: kartocheck --help\n"));
}

TEST(ProgramTest, HelpAndVersionAreToldOnStandardOutput) {
  const Outcome help = Call({QStringLiteral("--help")});
  EXPECT_EQ(help.status, 0);
  EXPECT_TRUE(help.out.startsWith("KartoCheck prüft Chipkartenterminals"));
  EXPECT_TRUE(help.messages.isEmpty());
  EXPECT_EQ(Call({QStringLiteral("--version")}).out,
            QByteArray("KartoCheck " KARTOCHECK_VERSION "\n"));
}

TEST(ProgramTest, TheGuidedQuestionsAreAnsweredOnStandardInput) {
  const Outcome outcome = Call(Console({QStringLiteral("--simulate"), QStringLiteral("kvk-60"),
                                        QStringLiteral("--diagnose"), QStringLiteral("1")}),
                               "j\nn\n");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_TRUE(outcome.out.contains("Ja / Nein [J/n] j\nKartoCheck Diagnose: "))
      << "what is not typed is shown: " << outcome.out.toStdString();
  EXPECT_TRUE(outcome.out.contains("Familienname:                   Größl\n"));
}

TEST(ProgramTest, WithoutInputTheGuidedQuestionsEnd) {
  const Outcome outcome = Call(Console({QStringLiteral("--simulate"), QStringLiteral("kvk-60"),
                                        QStringLiteral("--diagnose"), QStringLiteral("1")}));
  EXPECT_EQ(outcome.status, 1) << "a cable fault ends without a check";
}

// The library opens the same devices under the same numbers.
TEST(ProgramTest, TheLibraryIsToldWhichDeviceIsWhichPort) {
  const Outcome outcome = Call(Console(
      {QStringLiteral("--ct-api"), QStringLiteral(COM_TABLE_LIBRARY), QStringLiteral("--port"),
       QStringLiteral("7"), QStringLiteral("--serial-port"), QStringLiteral("300=/dev/a")}));
  EXPECT_EQ(outcome.status, 3) << "300 is no serial port";

  const Outcome told = Call(Console(
      {QStringLiteral("--ct-api"), QStringLiteral(COM_TABLE_LIBRARY), QStringLiteral("--port"),
       QStringLiteral("7"), QStringLiteral("--serial-port"), QStringLiteral("250=/dev/there"),
       QStringLiteral("--serial-port"), QStringLiteral("251=/dev/here")}));
  EXPECT_EQ(told.status, 1);
  EXPECT_TRUE(told.messages.contains("250=/dev/there;251=/dev/here>\n"))
      << told.messages.toStdString();
}

// Whatever the command line says, the control knows COM 1 to 4 only.
TEST(ProgramTest, ADeviceForANumberAboveFourIsLeftToTheLibrary) {
  const Outcome outcome =
      Call(Console({QStringLiteral("--ct-api"), QStringLiteral(COM_TABLE_LIBRARY),
                    QStringLiteral("--port"), QStringLiteral("5"), QStringLiteral("--serial-port"),
                    QStringLiteral("5=/dev/there-is-none")}));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(outcome.out.contains("PKT Modell:                     Unbekanntes Gerät?!\n"))
      << outcome.out.toStdString();
}

}  // namespace
}  // namespace kartocheck::test
