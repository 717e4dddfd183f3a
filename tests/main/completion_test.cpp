#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "support/printing.h"

// What bash offers for a call of the program.

namespace kartocheck::test {
namespace {

constexpr int PatienceMs = 30'000;

// In this folder, with the words of the call so far; the last one is to be completed.
QStringList Completions(const QStringList& words, const QString& folder = QDir::currentPath()) {
  const QString script = QStringLiteral(R"(
    source "$1" || exit
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    [[ $(complete -p kartocheck) =~ -F\ ([^ ]+) ]] || exit
    "${BASH_REMATCH[1]}" "$1"
    printf '%s\n' "${COMPREPLY[@]}")");
  QProcess bash;
  bash.setWorkingDirectory(folder);
  bash.start(
      QStringLiteral("bash"),
      QStringList{QStringLiteral("--norc"), QStringLiteral("-c"), script, QStringLiteral("bash"),
                  QStringLiteral(COMPLETION_FILE), QStringLiteral(KARTOCHECK_PROGRAM)} +
          words);
  EXPECT_TRUE(bash.waitForFinished(PatienceMs));
  EXPECT_EQ(bash.readAllStandardError(), QByteArray());
  QStringList completions =
      QString::fromUtf8(bash.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
  completions.sort();
  return completions;
}

QStringList Words(const char* words) {
  return QString::fromUtf8(words).split(u' ');
}

// Each option has a line of its own in the help.
QStringList OptionsOfHelp() {
  QProcess program;
  program.start(QStringLiteral(KARTOCHECK_PROGRAM), {QStringLiteral("--help")});
  EXPECT_TRUE(program.waitForFinished(PatienceMs));
  const QString help = QString::fromUtf8(program.readAllStandardOutput());
  QStringList options;
  static const QRegularExpression line(QStringLiteral("^  (--[a-z-]+)"),
                                       QRegularExpression::MultilineOption);
  for (const auto& match : line.globalMatch(help)) options.append(match.captured(1));
  options.sort();
  return options;
}

class CompletionTest : public testing::Test {
 protected:
  void Touch(const char* name) {
    QFile file(folder.filePath(QString::fromLatin1(name)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  QTemporaryDir folder;
};

TEST_F(CompletionTest, OffersTheOptionsOfTheHelp) {
  const QStringList options = OptionsOfHelp();
  ASSERT_GE(options.size(), 14);
  EXPECT_EQ(Completions({QString()}), options);
  EXPECT_EQ(Completions(Words("--console --")), options);
}

TEST_F(CompletionTest, OffersWhatBeginsAsTyped) {
  EXPECT_EQ(Completions(Words("--se")), Words("--serial-port"));
}

TEST_F(CompletionTest, ALibraryIsAFile) {
  Touch("meine.so");
  Touch("andere.so");
  EXPECT_EQ(Completions(Words("--ct-api m"), folder.path()), Words("meine.so"));
  EXPECT_EQ(Completions(Words("--ct-api = m"), folder.path()), Words("meine.so"));
  EXPECT_EQ(Completions(Words("--ct-api ="), folder.path()), Words("andere.so meine.so"));
}

TEST_F(CompletionTest, SchemasLieInAFolder) {
  Touch("datei");
  ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("ordner")));
  EXPECT_EQ(Completions({QStringLiteral("--schema-dir"), QString()}, folder.path()),
            Words("ordner"));
}

TEST_F(CompletionTest, AScenarioIsABundledNameOrAFile) {
  Touch("praxisnah.json");
  EXPECT_EQ(Completions(Words("--simulate prax"), folder.path()), Words("praxis praxisnah.json"));
  EXPECT_TRUE(Completions(Words("--simulate --con")).contains(QStringLiteral("--console")))
      << "the name may be left out";
}

TEST_F(CompletionTest, APortIsANumber) {
  for (const char* option : {"--port", "--diagnose"}) {
    EXPECT_EQ(Completions({QString::fromLatin1(option), QStringLiteral("8")}), Words("8192"));
  }
  EXPECT_EQ(Completions({QStringLiteral("--serial-port"), QString()}), Words("1= 2= 3= 4="));
}

}  // namespace
}  // namespace kartocheck::test
