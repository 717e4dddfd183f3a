#include "main/installation.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "support/printing.h"

namespace kartocheck::test {
namespace {

void Touch(const QString& path) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
}

TEST(InstallationTest, TheHelperStandsBesideTheProgramWhereItWasBuilt) {
  const QTemporaryDir build;
  Touch(build.filePath(QStringLiteral("kartocheck-helper")));
  EXPECT_EQ(HelperProgram(build.path()), build.filePath(QStringLiteral("kartocheck-helper")));
}

TEST(InstallationTest, OrInThePrivateDirectoryWhereItIsInstalled) {
  EXPECT_EQ(HelperProgram(QStringLiteral("/opt/bin")), u"/opt/lib/kartocheck/kartocheck-helper");
}

TEST(InstallationTest, TheWindowStandsWhereTheHelperDoes) {
  const QTemporaryDir build;
  Touch(build.filePath(QStringLiteral("kartocheck-window")));
  EXPECT_EQ(WindowProgram(build.path()), build.filePath(QStringLiteral("kartocheck-window")));
  EXPECT_EQ(WindowProgram(QStringLiteral("/opt/bin")), u"/opt/lib/kartocheck/kartocheck-window");
}

TEST(InstallationTest, APartOfTheProgramKnowsTheProgramsDirectory) {
  EXPECT_EQ(ProgramDirectoryOfPart(QStringLiteral("/opt/lib/kartocheck")), u"/opt/bin");
  EXPECT_EQ(ProgramDirectoryOfPart(QStringLiteral("/build/release")), u"/build/release");
}

// What dlopen would look for on the system's search path alone.
TEST(InstallationTest, ANamedLibraryIsAFileOfTheCurrentDirectoryFirst) {
  const QTemporaryDir directory;
  const QString before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(directory.path()));
  Touch(QStringLiteral("meine.so"));
  EXPECT_EQ(NamedLibrary(QStringLiteral("meine.so")),
            QDir::current().absoluteFilePath(QStringLiteral("meine.so")));
  EXPECT_EQ(NamedLibrary(QStringLiteral("andere.so")), u"andere.so") << "the system's turn";
  ASSERT_TRUE(QDir::current().mkdir(QStringLiteral("ordner.so")));
  EXPECT_EQ(NamedLibrary(QStringLiteral("ordner.so")), u"ordner.so");
  EXPECT_EQ(NamedLibrary(QStringLiteral("/lib/meine.so")), u"/lib/meine.so");
  ASSERT_TRUE(QDir::setCurrent(before));
}

TEST(InstallationTest, TheLibraryIsLookedForBesideTheProgramFirst) {
  EXPECT_EQ(CtApiCandidates(QStringLiteral("/opt/bin")),
            (QStringList{QStringLiteral("/opt/bin/libCTNRV32.so"),
                         QStringLiteral("/opt/lib/kartocheck/libCTNRV32.so"),
                         QStringLiteral("libCTNRV32.so")}));
}

TEST(InstallationTest, DataStandBesideTheProgramOrInTheSharedDirectory) {
  EXPECT_EQ(DataDirectories(QStringLiteral("/opt/bin")),
            (QStringList{QStringLiteral("/opt/bin"), QStringLiteral("/opt/share/kartocheck")}));
}

TEST(InstallationTest, AScenarioIsAFileOrABundledName) {
  const QTemporaryDir directory;
  ASSERT_TRUE(QDir(directory.path()).mkdir(QStringLiteral("scenarios")));
  const QString bundled = directory.filePath(QStringLiteral("scenarios/eins.json"));
  Touch(bundled);
  EXPECT_EQ(ScenarioFile(directory.path(), QStringLiteral("eins")), bundled);
  EXPECT_EQ(ScenarioFile(directory.path(), bundled), bundled);
  EXPECT_EQ(ScenarioFile(directory.path(), QStringLiteral("zwei")), std::nullopt);
}

}  // namespace
}  // namespace kartocheck::test
