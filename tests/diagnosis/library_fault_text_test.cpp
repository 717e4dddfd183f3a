#include "diagnosis/library_fault_text.h"

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "support/printing.h"
#include "support/sentence_name.h"
#include "support/system.h"

namespace kartocheck::test {
namespace {

struct FaultTextRow {
  const char* sentence;
  LibraryFault fault;
  QStringView text;

  friend std::ostream& operator<<(std::ostream& out, const FaultTextRow& row) {
    return out << row.sentence;
  }
};

class LibraryFaultTextTest : public testing::TestWithParam<FaultTextRow> {};

TEST_P(LibraryFaultTextTest, Text) {
  EXPECT_EQ(LibraryFaultText(GetParam().fault), GetParam().text);
}

using enum LibraryFaultKind;

TEST(CrashTextTest, NamesTheCrash) {
  EXPECT_EQ(LibraryFaultText({EndedBySignal, {}, MemoryFault()}),
            u"Die CT-API-Bibliothek ist abgestürzt (" + NameOfMemoryFault() + u").");
}

TEST(CrashTextTest, TellsTheNumberOfAnUnknownOne) {
  EXPECT_EQ(LibraryFaultText({EndedBySignal, {}, 4711}),
            u"Die CT-API-Bibliothek ist abgestürzt (" + NameOfUnknownCrash() + u").");
}

INSTANTIATE_TEST_SUITE_P(
    Diagnosis, LibraryFaultTextTest,
    testing::ValuesIn(std::vector<FaultTextRow>{
        {"no helper",
         {HelperMissing, "/usr/lib/helfer"},
         u"Das Hilfsprogramm \"/usr/lib/helfer\" lässt sich nicht starten. Installieren Sie "
         u"KartoCheck neu."},
        {"no file",
         {FileMissing, "libCTNRV32.so"},
         u"Die CT-API-Bibliothek \"libCTNRV32.so\" wurde nicht gefunden."},
        {"no dependency",
         {DependencyMissing, "libgerät.so.1"},
         u"Die CT-API-Bibliothek braucht eine weitere Bibliothek, die fehlt: libgerät.so.1."},
        {"no library",
         {NotALibrary, "/a/b"},
         u"\"/a/b\" ist keine Programmbibliothek dieses Systems."},
        {"another word size",
         {WrongWordSize, "/a/b"},
         u"\"/a/b\" hat eine andere Wortbreite (32 oder 64 Bit) als KartoCheck."},
        {"the system's own words",
         {NotLoadable, "permission denied"},
         u"Die CT-API-Bibliothek lässt sich nicht laden: permission denied"},
        {"no entry point",
         {EntryPointMissing, "CTDENRVT1_data"},
         u"Der CT-API-Bibliothek fehlt die Funktion CTDENRVT1_data."},
        {"written outside its buffer",
         {Overrun},
         u"Die CT-API-Bibliothek hat außerhalb ihres Antwortpuffers geschrieben."},
        {"an exception", {Threw}, u"Die CT-API-Bibliothek hat eine C++-Ausnahme ausgelöst."},
        {"an exit status",
         {EndedWithStatus, {}, 3},
         u"Die CT-API-Bibliothek hat ihren Prozess beendet (Exit-Status 3)."},
        {"a disturbed pipe",
         {Garbled},
         u"Die CT-API-Bibliothek hat die Verbindung zum Programm gestört."},
        {"a response that cannot be",
         {ResponseTooLong},
         u"Die CT-API-Bibliothek meldet eine längere Antwort, als ihr Puffer fasst."},
        {"a command that is none",
         {ImproperCommand},
         u"Das Programm hat ein Kommando gebildet, das keines ist."},
    }),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
