#include "main/installation.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "platform/system_layout.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

void Touch(const QString& path) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
}

TEST(InstallationTest, PartsStandBesideTheProgramWhereItWasBuilt) {
  const QTemporaryDir build;
  const QStringView suffix = LayoutOfThisSystem().ProgramSuffix;
  const QString helper = build.filePath(u"kartocheck-helper" + suffix);
  const QString window = build.filePath(u"kartocheck-window" + suffix);
  Touch(helper);
  Touch(window);
  EXPECT_EQ(HelperProgram(build.path()), helper);
  EXPECT_EQ(WindowProgram(build.path()), window);
}

TEST(InstallationTest, APartKnowsTheProgramsDirectoryThere) {
  EXPECT_EQ(ProgramDirectoryOfPart(QStringLiteral("/build/release")), u"/build/release");
}

// What the system's loader would look for on its search path alone.
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
