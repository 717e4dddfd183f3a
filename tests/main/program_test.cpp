#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

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
  const Outcome outcome = Call(Console(
      {QStringLiteral("--simulate"), QStringLiteral("--json"), QStringLiteral("--verbose")}));
  EXPECT_EQ(outcome.status, 0);
  EXPECT_FALSE(QJsonDocument::fromJson(outcome.out).isNull()) << "standard output is one document";
  EXPECT_EQ(outcome.messages.count("Programm prüft "), 513) << "a line each without a terminal";
  EXPECT_FALSE(outcome.messages.contains('\r'));
}

// A record that stays and a card that is missing ask; nothing else is to tell.
TEST(ProgramTest, WithoutATerminalOnlyMessagesAreTold) {
  const QStringList arguments{QStringLiteral("--simulate"), QStringLiteral("keine-karte"),
                              QStringLiteral("--port"), QStringLiteral("1")};
  const Outcome told = Call(Console(arguments));
  EXPECT_TRUE(told.messages.startsWith("KartoCheck: Bitte eine Krankenversichertenkarte"))
      << told.messages.toStdString();
  EXPECT_FALSE(told.messages.contains("Programm prüft "));
  const Outcome quiet = Call(Console(arguments + QStringList{QStringLiteral("--quiet")}));
  EXPECT_EQ(quiet.messages, QByteArray());
  EXPECT_EQ(quiet.out, told.out);
  EXPECT_EQ(quiet.status, told.status);
}

// What ended the program is no message of a box.
TEST(ProgramTest, WhyItEndedIsToldInSilenceToo) {
  const Outcome outcome =
      Call(Console({QStringLiteral("--ct-api"), QStringLiteral("/there/is/none.so"),
                    QStringLiteral("--port"), QStringLiteral("8192"), QStringLiteral("--quiet")}));
  EXPECT_EQ(outcome.status, 3);
  EXPECT_TRUE(outcome.messages.startsWith("KartoCheck: ")) << outcome.messages.toStdString();
  EXPECT_FALSE(outcome.messages.contains("Datei nicht gefunden, CTNRV32.dll !!!"));
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
  EXPECT_TRUE(told.messages.contains("250=/dev/there;251=/dev/here>"))
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

// As a user calls it from the folder where the library lies.
TEST(ProgramTest, ALibraryIsFoundInTheCurrentDirectory) {
  const QTemporaryDir folder;
  ASSERT_TRUE(
      QFile::copy(QStringLiteral(COM_TABLE_LIBRARY), folder.filePath(QStringLiteral("meine.so"))));
  QProcess process;
  process.setWorkingDirectory(folder.path());
  process.start(QStringLiteral(KARTOCHECK_PROGRAM),
                Console({QStringLiteral("--ct-api"), QStringLiteral("meine.so"),
                         QStringLiteral("--port"), QStringLiteral("5")}));
  ASSERT_TRUE(process.waitForFinished(PatienceMs));
  EXPECT_EQ(process.exitCode(), 1) << process.readAllStandardError().toStdString();
}

}  // namespace
}  // namespace kartocheck::test
