#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "support/loaded_library.h"
#include "support/printing.h"

// What the loader says of ELF files.

namespace kartocheck::test {
namespace {

TEST(LoadFaultTest, TellsTheLibraryThatTheLibraryNeeds) {
  EXPECT_EQ(LoadFaultOf(QStringLiteral(LIBRARY_WITHOUT_DEPENDENCY)),
            (LibraryFault{LibraryFaultKind::DependencyMissing, "libKartoCheckTestGone.so"}));
}

// An ELF file tells its word size in its fifth byte.
TEST(LoadFaultTest, TellsALibraryOfAnotherWordSize) {
  const QTemporaryDir directory;
  const QString name = directory.filePath(QStringLiteral("libCTNRV32.so"));
  ASSERT_TRUE(QFile::copy(QStringLiteral(ECHO_LIBRARY), name));
  QFile file(name);
  ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(4));
  const char otherWordSize = sizeof(void*) == 8 ? 1 : 2;
  ASSERT_EQ(file.write(&otherWordSize, 1), 1);
  file.close();
  EXPECT_EQ(LoadFaultOf(name), (LibraryFault{LibraryFaultKind::WrongWordSize, name.toStdString()}));
}

}  // namespace
}  // namespace kartocheck::test
