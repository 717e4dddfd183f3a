#include "main/installation.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "support/printing.h"

namespace kartocheck::test {
namespace {

constexpr QStringView Library = u"libCTNRV32.so";

class OwnLibraryTest : public testing::Test {
 protected:
  OwnLibraryTest() {
    QDir(folder.path()).mkpath(QStringLiteral("bin"));
    QDir(folder.path()).mkpath(QStringLiteral("lib/kartocheck"));
    QDir(folder.path()).mkpath(QStringLiteral("elsewhere"));
  }

  QString Make(const QString& name) {
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    return file.fileName();
  }
  bool IsOwn(const QString& loaded) {
    return IsOwnCtApi(folder.filePath(QStringLiteral("bin")), Library, loaded);
  }

  QTemporaryDir folder;
};

TEST_F(OwnLibraryTest, StandsBesideTheProgramOrInItsLibraryDirectory) {
  EXPECT_TRUE(IsOwn(Make(QStringLiteral("bin/libCTNRV32.so"))));
  EXPECT_TRUE(IsOwn(Make(QStringLiteral("lib/kartocheck/libCTNRV32.so"))));
  EXPECT_TRUE(IsOwn(folder.filePath(QStringLiteral("bin/../lib/./kartocheck/libCTNRV32.so"))));
  const QString link = folder.filePath(QStringLiteral("elsewhere/link.so"));
  ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("bin/libCTNRV32.so")), link));
  EXPECT_TRUE(IsOwn(link));
}

TEST_F(OwnLibraryTest, IsNoOther) {
  (void)Make(QStringLiteral("bin/libCTNRV32.so"));
  EXPECT_FALSE(IsOwn(Make(QStringLiteral("elsewhere/libCTNRV32.so"))));
  EXPECT_FALSE(IsOwn(Make(QStringLiteral("bin/other.so"))));
  EXPECT_FALSE(IsOwn(folder.filePath(QStringLiteral("lib/kartocheck/libCTNRV32.so"))))
      << "there is none";
  EXPECT_FALSE(IsOwn(Library.toString())) << "what the search path finds";
  EXPECT_FALSE(IsOwn(QString())) << "none was loaded";
}

}  // namespace
}  // namespace kartocheck::test
