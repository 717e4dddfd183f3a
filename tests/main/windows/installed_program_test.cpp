#include <gtest/gtest.h>

#include "main/installation.h"
#include "support/printing.h"

// Where an installed program finds its parts.

namespace kartocheck::test {
namespace {

const QString Programs = QStringLiteral("C:/Programme/KartoCheck");

// The window stands beside the program, since its users start it as well.
TEST(InstalledProgramTest, TheHelper) {
  EXPECT_EQ(HelperProgram(Programs),
            u"C:/Programme/KartoCheck/lib/kartocheck/kartocheck-helper.exe");
  EXPECT_EQ(ProgramDirectoryOfPart(QStringLiteral("C:/Programme/KartoCheck/lib/kartocheck")),
            Programs);
}

// The one that a maker's driver has put into the system's folder goes before the one of ours.
TEST(InstalledProgramTest, TheLibrary) {
  EXPECT_EQ(CtApiCandidates(Programs),
            (QStringList{QStringLiteral("C:/Programme/KartoCheck/CTNRV32.dll"),
                         QStringLiteral("CTNRV32.dll"),
                         QStringLiteral("C:/Programme/KartoCheck/lib/kartocheck/CTNRV32.dll")}));
}

TEST(InstalledProgramTest, Data) {
  EXPECT_EQ(DataDirectories(Programs),
            (QStringList{Programs, QStringLiteral("C:/Programme/KartoCheck/schemas")}));
}

}  // namespace
}  // namespace kartocheck::test
