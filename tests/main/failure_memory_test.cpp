#include "main/failure_memory.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "support/printing.h"
#include "support/system.h"

namespace kartocheck::test {
namespace {

TEST(FailureMemoryTest, TellsTheNextStartWhenAndWhyTheProgramEnded) {
  const QTemporaryDir directory;
  const QString file = directory.filePath(QStringLiteral("settings.ini"));
  {
    QSettings settings(file, QSettings::IniFormat);
    FailureMemory memory(settings);
    EXPECT_EQ(memory.Text(), QString()) << "nothing has happened yet";
    memory.Keep(QDateTime(QDate(2031, 3, 5), QTime(9, 7, 1)),
                {.Kind = LibraryFaultKind::EndedBySignal, .Number = MemoryFault()});
    // The program ends at once then: what is kept stands in the file already.
    EXPECT_TRUE(QFile::exists(file));
  }
  QSettings settings(file, QSettings::IniFormat);
  FailureMemory memory(settings);
  EXPECT_EQ(memory.Text(), u"05.03.2031 09:07:01: Die CT-API-Bibliothek ist abgestürzt (" +
                               NameOfMemoryFault() + u").");
  memory.Keep(QDateTime(QDate(2031, 3, 6), QTime(10, 0)), {LibraryFaultKind::Overrun});
  EXPECT_EQ(memory.Text(),
            u"06.03.2031 10:00:00: Die CT-API-Bibliothek hat außerhalb ihres Antwortpuffers "
            u"geschrieben.")
      << "the last one";
}

}  // namespace
}  // namespace kartocheck::test
