#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "main/called_program.h"
#include "support/printing.h"
#include "support/sentence_name.h"
#include "support/system.h"

// What was read reaches whoever called the program, whatever happens to the library.

namespace kartocheck::test {
namespace {

QJsonObject PortIn(const QJsonObject& document, const char* pn) {
  return document.value(u"ports").toObject().value(QLatin1StringView(pn)).toObject();
}

bool HasData(const QJsonObject& port) {
  return port.value(u"data").isObject();
}

struct RecordRow {
  const char* sentence;
  const char* scenario;
  QStringView lastName;

  friend std::ostream& operator<<(std::ostream& out, const RecordRow& row) {
    return out << row.sentence;
  }
};

class ErasedRecordTest : public testing::TestWithParam<RecordRow> {
 protected:
  [[nodiscard]] static QString Scenario() { return Path(GetParam().scenario); }
  [[nodiscard]] static QString PlanOf(int exchange, const char* deed) {
    return QStringLiteral("data %1 %2").arg(exchange).arg(QLatin1StringView(deed));
  }
  static void ExpectTheRecord(const QJsonObject& port) {
    ASSERT_TRUE(HasData(port));
    EXPECT_EQ(port.value(u"data").toObject().value(u"elements").toObject().value(u"lastName"),
              GetParam().lastName.toString());
  }
};

// The library dies at every exchange in turn.
TEST_P(ErasedRecordTest, IsShownWhateverComesBehindIt) {
  constexpr int MostExchanges = 40;
  bool isErased = false;
  int shown = 0;
  for (int exchange = 1; exchange <= MostExchanges; ++exchange) {
    SCOPED_TRACE(exchange);
    MisbehavingProgram program(Scenario(), PlanOf(exchange, "crash"), Json);
    (void)program.Start();
    const int status = program.Status();
    const QJsonObject document = program.Document();
    const QJsonObject port = PortIn(document, "5");
    if (status == 0) {
      // There is no such exchange in the whole run.
      EXPECT_TRUE(document.value(u"complete").toBool());
      ExpectTheRecord(port);
      EXPECT_GE(shown, 3) << "erase, eject, closing reset";
      return;
    }
    EXPECT_EQ(status, 3);
    EXPECT_FALSE(document.value(u"complete").toBool(true));
    const QString reason =
        u"\nKartoCheck: Die CT-API-Bibliothek ist abgestürzt (" + NameOfMemoryFault() + u").\n";
    EXPECT_TRUE(program.messages.contains(reason.toUtf8())) << program.messages.toStdString();
    const QJsonArray messages = port.value(u"messages").toArray();
    ASSERT_FALSE(messages.isEmpty());
    EXPECT_EQ(messages.last().toObject().value(u"text").toString(),
              u"Dynamic Link Library (DLL) Fehler !!! ; CTNRV32.dll ");
    isErased = isErased || HasData(port);
    if (isErased) {
      ++shown;
      ExpectTheRecord(port);
    }
  }
  FAIL() << "the run has no end";
}

INSTANTIATE_TEST_SUITE_P(Program, ErasedRecordTest,
                         testing::ValuesIn(std::vector<RecordRow>{
                             {"a KVK record", SCENARIOS "/kvk-gespeichert.json", u"Größl"},
                             {"an eGK record", SCENARIOS "/egk-gespeichert.json", u"Beispiel"},
                         }),
                         SentenceName());

class ProgramFaultTest : public testing::TestWithParam<const char*> {};

// The document parses whatever the library does, and the text report has its end.
TEST_P(ProgramFaultTest, LeavesAWholeReport) {
  const QString plan = QString::fromLatin1(GetParam());
  MisbehavingProgram json(Path(SCENARIOS "/kvk-60.json"), plan, Json);
  (void)json.Start();
  EXPECT_EQ(json.Status(), 3);
  EXPECT_FALSE(json.Document().value(u"complete").toBool(true));
  EXPECT_FALSE(json.out.contains("Mustermann")) << "what the library prints";

  MisbehavingProgram text(Path(SCENARIOS "/kvk-60.json"), plan, {});
  (void)text.Start();
  EXPECT_EQ(text.Status(), 3);
  EXPECT_TRUE(text.out.startsWith("KartoCheck "));
  EXPECT_TRUE(text.out.endsWith("\nDer Lauf wurde vorzeitig beendet.\n")) << text.out.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Program, ProgramFaultTest,
                         testing::Values("load 1 crash", "init 1 crash", "baud 1 crash",
                                         "close 1 crash", "data 3 abort", "data 4 exit",
                                         "data 4 throw", "data 5 write-behind",
                                         "data 5 write-before", "data 5 close-descriptors",
                                         "data 5 parent-leaves", "data 5 write-to-all"),
                         SentenceName());

TEST(ProgramFaultTest, PrintedTextIsNoPartOfTheReport) {
  MisbehavingProgram program(Path(SCENARIOS "/kvk-60.json"), QStringLiteral("data 2 print"), Json);
  (void)program.Start();
  EXPECT_EQ(program.Status(), 0);
  EXPECT_TRUE(program.Document().value(u"complete").toBool());
}

}  // namespace
}  // namespace kartocheck::test
