#include <gtest/gtest.h>

#include "main/installation.h"
#include "support/printing.h"

// Where an installed program finds its parts.

namespace kartocheck::test {
namespace {

const QString Programs = QStringLiteral("/opt/bin");

TEST(InstalledProgramTest, HelperAndWindow) {
  EXPECT_EQ(HelperProgram(Programs), u"/opt/lib/kartocheck/kartocheck-helper");
  EXPECT_EQ(WindowProgram(Programs), u"/opt/lib/kartocheck/kartocheck-window");
  EXPECT_EQ(ProgramDirectoryOfPart(QStringLiteral("/opt/lib/kartocheck")), Programs);
}

TEST(InstalledProgramTest, TheLibrary) {
  EXPECT_EQ(CtApiCandidates(Programs),
            (QStringList{QStringLiteral("/opt/bin/libCTNRV32.so"),
                         QStringLiteral("/opt/lib/kartocheck/libCTNRV32.so"),
                         QStringLiteral("libCTNRV32.so")}));
}

TEST(InstalledProgramTest, Data) {
  EXPECT_EQ(DataDirectories(Programs),
            (QStringList{Programs, QStringLiteral("/opt/share/kartocheck")}));
}

}  // namespace
}  // namespace kartocheck::test
