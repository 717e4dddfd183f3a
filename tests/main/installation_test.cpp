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

TEST(InstallationTest, TheLibraryIsLookedForBesideTheProgramFirst) {
  EXPECT_EQ(CtApiCandidates(QStringLiteral("/opt/bin"), u"libCTNRV32.so"),
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
