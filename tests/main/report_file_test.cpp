#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "support/printing.h"

// The test report that a console run writes to a file.

namespace kartocheck::test {
namespace {

constexpr int PatienceMs = 30'000;

class ReportFileTest : public testing::Test {
 protected:
  // Runs the program over the simulated practice; its exit status.
  int Run(const QStringList& arguments) {
    QProcess process;
    // No display, and nothing that stands for one.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
      environment.remove(QString::fromLatin1(variable));
    }
    process.setProcessEnvironment(environment);
    process.start(QString::fromLocal8Bit(KARTOCHECK_PROGRAM),
                  QStringList{QStringLiteral("--console"), QStringLiteral("--simulate"),
                              QStringLiteral("praxis")} +
                      arguments);
    EXPECT_TRUE(process.waitForFinished(PatienceMs));
    out = process.readAllStandardOutput();
    messages = process.readAllStandardError();
    return process.exitCode();
  }

  [[nodiscard]] QByteArray Written(const QString& name) const {
    QFile file(directory.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QTemporaryDir directory;
  QByteArray out;
  QByteArray messages;
};

TEST_F(ReportFileTest, HoldsThePortsAndNothingOfACard) {
  EXPECT_EQ(Run({QStringLiteral("--report"), directory.filePath(QStringLiteral("bericht.txt"))}),
            0);
  EXPECT_TRUE(out.contains("Beispiel")) << "the run reports as without";
  const QByteArray report = Written(QStringLiteral("bericht.txt"));
  EXPECT_TRUE(report.startsWith("Prüfbericht KartoCheck\r\n"));
  EXPECT_TRUE(report.contains("\r\nCOM 1\r\n  Anschluss:              vorhanden\r\n"));
  EXPECT_TRUE(report.contains("\r\nUSB Device 1 (CTAPI pn=8192)\r\n"));
  EXPECT_TRUE(report.contains("  Version:                " KARTOCHECK_VERSION "\r\n"));
  EXPECT_FALSE(report.contains("Beispiel"));
}

TEST_F(ReportFileTest, StandsBesideAJsonDocument) {
  EXPECT_EQ(Run({QStringLiteral("--json"), QStringLiteral("--port"), QStringLiteral("2"),
                 QStringLiteral("--report"), directory.filePath(QStringLiteral("bericht.txt"))}),
            0);
  EXPECT_TRUE(out.startsWith("{"));
  const QByteArray report = Written(QStringLiteral("bericht.txt"));
  EXPECT_TRUE(report.contains("\r\nCOM 2\r\n"));
  EXPECT_FALSE(report.contains("\r\nCOM 1\r\n")) << "the run looked at one port";
}

// What cannot be told is not read: a read may erase a record.
TEST_F(ReportFileTest, AFileThatCannotBeWrittenEndsTheRunBeforeItReads) {
  EXPECT_EQ(Run({QStringLiteral("--report"),
                 directory.filePath(QStringLiteral("no such folder/bericht.txt"))}),
            4);
  EXPECT_TRUE(messages.contains("Der Prüfbericht kann nicht geschrieben werden: "));
  EXPECT_TRUE(out.isEmpty());
}

#ifdef KARTOCHECK_WITH_WINDOW
TEST_F(ReportFileTest, IsAPdfByItsNameWithoutADisplay) {
  EXPECT_EQ(Run({QStringLiteral("--report"), directory.filePath(QStringLiteral("bericht.pdf"))}),
            0);
  EXPECT_TRUE(out.contains("Beispiel"));
  EXPECT_TRUE(Written(QStringLiteral("bericht.pdf")).startsWith("%PDF-"));
}
#else
TEST_F(ReportFileTest, WithoutTheWindowThereIsNoPdf) {
  EXPECT_EQ(Run({QStringLiteral("--report"), directory.filePath(QStringLiteral("bericht.pdf"))}),
            3);
  EXPECT_TRUE(messages.contains("nur als Text"));
}
#endif

}  // namespace
}  // namespace kartocheck::test
