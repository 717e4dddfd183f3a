#include "diagnosis/status_check.h"

#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "support/answer_book.h"
#include "support/dialogue.h"
#include "support/faulty_api.h"
#include "support/link_fixture.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

// What is known of the terminal before the check.
struct Known {
  bool answered = true;
  bool mobile = false;  // Reset95
  QStringView product = u"PKT-S";
};

struct StatusRow {
  const char* sentence;
  Known known{};
  std::string script;
  Readiness result = Readiness::NotReady;
  QStringView box{};              // text of the one box, all with OK and the stop icon
  bool displayOrPrinter = false;  // the output medium was written
  bool selectRefused = false;
  int pn = 1;

  friend std::ostream& operator<<(std::ostream& out, const StatusRow& row) {
    return out << row.sentence;
  }
};

constexpr QStringView Before = u"PC (ASN-1)";

TerminalInfo InfoOf(const Known& known, bool refusedBefore) {
  TerminalInfo info;
  info.DisplayText = Before;
  info.ProductCode = known.product;
  info.Answered = known.answered;
  info.Reset95 = known.mobile;
  info.SelectRefused = refusedBefore;
  return info;
}

class StatusCheckTest : public testing::TestWithParam<StatusRow> {};

TEST_P(StatusCheckTest, Result) {
  const StatusRow& row = GetParam();
  // What an earlier check found out stays until the port is scanned again.
  for (const bool refusedBefore : {false, true}) {
    Dialogue dialogue(row.script);
    Link link(dialogue);
    TerminalInfo info = InfoOf(row.known, refusedBefore);
    EXPECT_EQ(CheckStatus({link.session, Port(row.pn), info, link.dialogs}), row.result);

    ASSERT_EQ(link.dialogs.boxes.size(), row.box.isEmpty() ? 0U : 1U);
    if (!row.box.isEmpty()) {
      const ShownBox& box = link.dialogs.boxes[0];
      EXPECT_EQ(box.title, u" KartoCheck ");
      EXPECT_EQ(box.text, row.box);
      EXPECT_EQ(box.icon, Icon::Critical);
      EXPECT_FALSE(box.isQuestion) << "OK only";
    }
    EXPECT_EQ(info.DisplayText.Trimmed(), row.displayOrPrinter ? u"LCD-Anzeige/Drucker" : Before);
    EXPECT_EQ(info.SelectRefused, refusedBefore || row.selectRefused);
    EXPECT_FALSE(link.session.IsOpen());
    EXPECT_EQ(info.Answered, row.known.answered);
    EXPECT_EQ(info.Reset95, row.known.mobile);
  }
}

constexpr QStringView NotSwitchedOn =
    u" Bitte Chipkartenterminal überprüfen! \r\n Ist das Terminal eingeschaltet?! \r\n"
    u" Ist die KeyCard nicht mehr aktiv?! ";
constexpr QStringView NoRecords = u" Es sind keine Datensätze gespeichert! \r\n";
constexpr QStringView MenuActive =
    u" Bitte Chipkartenterminal überprüfen! \r\n"
    u" Sind die Chipkartenterminal Menü-Einstellungen aktiviert? \r\n"
    u" Wenn ja, Chipkartenterminal auf die Standardanzeige stellen.";
constexpr QStringView Locked =
    u" Bitte Chipkartenterminal überprüfen! \r\n"
    u" Ist das mobile Chipkartenterminal zugeschlossen?\r\n"
    u" Wenn ja, Chipkartenterminal aufschließen.";

// A check whose card request brings this answer, and nothing else.
std::string Requested(const char* answer) {
  return std::string("open 1\n> 20 12 01 00 01 01\n< ") + answer + "\nclose\n";
}

// The same, with the select of the KVK behind it.
std::string Selected(const char* requestAnswer, const char* selectAnswer, int pn = 1) {
  return "open " + std::to_string(pn) + "\n> 20 12 01 00 01 01\n< " + requestAnswer +
         "\n> 00 A4 04 00 06 D2 76 00 00 01 01\n< " + selectAnswer + "\nclose\n";
}

INSTANTIATE_TEST_SUITE_P(
    Open, StatusCheckTest,
    testing::Values(StatusRow{.sentence = "a known terminal that does not answer any more",
                              .script = "open 1 -> -10",
                              .box = NotSwitchedOn},
                    StatusRow{.sentence = "a terminal that never answered gets no advice",
                              .known = {.answered = false},
                              .script = "open 1 -> -10"},
                    StatusRow{.sentence = "another error of the open gets no advice",
                              .script = "open 1 -> -127"},
                    StatusRow{.sentence = "nor does an invalid parameter",
                              .script = "open 1 -> -1"},
                    StatusRow{.sentence = "a mobile terminal is advised like a fixed one",
                              .known = {.mobile = true},
                              .script = "open 1 -> -10",
                              .box = NotSwitchedOn}),
    SentenceName());

INSTANTIATE_TEST_SUITE_P(
    Request, StatusCheckTest,
    testing::Values(
        StatusRow{.sentence = "a transmission error tells of the output medium",
                  .script = Requested("-> -10"),
                  .displayOrPrinter = true},
        StatusRow{.sentence = "a terminal error tells of nothing", .script = Requested("-> -8")},
        StatusRow{.sentence = "an invalid parameter tells of nothing",
                  .script = Requested("-> -1")},
        StatusRow{.sentence = "a full buffer tells of nothing", .script = Requested("-> -11")},
        StatusRow{.sentence = "a host error tells of nothing", .script = Requested("-> -127")},
        StatusRow{.sentence = "an HTSI error tells of nothing", .script = Requested("-> -128")},
        StatusRow{.sentence = "one byte is no status word", .script = Requested("90")},
        StatusRow{.sentence = "any other status word", .script = Requested("6A 88")},
        StatusRow{.sentence = "6D00", .script = Requested("6D 00")},
        StatusRow{.sentence = "6202 is not 6201", .script = Requested("62 02")},
        StatusRow{.sentence = "9002 is not 9001", .script = Requested("90 02")},
        StatusRow{.sentence = "6901 is not 6900", .script = Requested("69 01")}),
    SentenceName());

INSTANTIATE_TEST_SUITE_P(
    CardPresent, StatusCheckTest,
    testing::Values(StatusRow{.sentence = "9000: a memory card",
                              .script = Selected("90 00", "90 00"),
                              .result = Readiness::Ready},
                    StatusRow{.sentence = "9001: a processor card",
                              .script = Selected("90 01", "90 00"),
                              .result = Readiness::Ready},
                    StatusRow{.sentence = "6201: the card was there already",
                              .script = Selected("62 01", "90 00"),
                              .result = Readiness::Ready},
                    StatusRow{.sentence = "the status word is the answer's end",
                              .script = Selected("3B 04 92 23 10 91 90 00", "90 00"),
                              .result = Readiness::Ready},
                    StatusRow{.sentence = "9000, and the select is answered 6985",
                              .script = Selected("90 00", "69 85"),
                              .result = Readiness::Ready,
                              .displayOrPrinter = true},
                    StatusRow{.sentence = "9001, and the select is answered 6985",
                              .script = Selected("90 01", "69 85"),
                              .result = Readiness::Ready,
                              .displayOrPrinter = true},
                    StatusRow{.sentence = "6201, and the select is answered 6985",
                              .script = Selected("62 01", "69 85"),
                              .result = Readiness::Ready,
                              .displayOrPrinter = true},
                    StatusRow{.sentence = "6985 behind other bytes is 6985",
                              .script = Selected("90 00", "90 00 69 85"),
                              .result = Readiness::Ready,
                              .displayOrPrinter = true},
                    StatusRow{.sentence = "a select without the application",
                              .script = Selected("90 00", "6A 82"),
                              .result = Readiness::Ready},
                    StatusRow{.sentence = "a select answered 6900 tells of nothing here",
                              .script = Selected("90 00", "69 00"),
                              .result = Readiness::Ready},
                    StatusRow{.sentence = "a select that fails",
                              .script = Selected("90 00", "-> -10"),
                              .result = Readiness::Ready},
                    StatusRow{.sentence = "a mobile terminal with a record",
                              .known = {.mobile = true, .product = u"PKTDM"},
                              .script = Selected("90 00", "90 00"),
                              .result = Readiness::Ready},
                    StatusRow{.sentence = "a further port",
                              .script = Selected("62 01", "90 00", 8192),
                              .result = Readiness::Ready,
                              .pn = 8192}),
    SentenceName());

INSTANTIATE_TEST_SUITE_P(
    NoCard, StatusCheckTest,
    testing::Values(StatusRow{.sentence = "a mobile Delta without records",
                              .known = {.mobile = true, .product = u"PKTDM"},
                              .script = Requested("62 00"),
                              .result = Readiness::Ready,
                              .box = NoRecords},
                    StatusRow{.sentence = "a mobile Delta of the other product code",
                              .known = {.mobile = true, .product = u"PKTD "},
                              .script = Requested("62 00"),
                              .result = Readiness::Ready,
                              .box = NoRecords},
                    StatusRow{.sentence = "a stationary PKTDM",
                              .known = {.product = u"PKTDM"},
                              .script = Selected("62 00", "90 00")},
                    StatusRow{.sentence = "a stationary PKTD",
                              .known = {.product = u"PKTD "},
                              .script = Selected("62 00", "69 85")},
                    StatusRow{.sentence = "a mobile terminal of another product",
                              .known = {.mobile = true, .product = u"PKT-S"},
                              .script = Selected("62 00", "6A 82")},
                    StatusRow{.sentence = "a mobile terminal without a product code",
                              .known = {.mobile = true, .product = u""},
                              .script = Selected("62 00", "90 00")},
                    StatusRow{.sentence = "a locked terminal refuses the select",
                              .script = Selected("62 00", "69 00"),
                              .selectRefused = true},
                    StatusRow{.sentence = "so does a locked mobile one",
                              .known = {.mobile = true, .product = u"PKT-S"},
                              .script = Selected("62 00", "69 00"),
                              .selectRefused = true},
                    StatusRow{.sentence = "a select that fails",
                              .script = Selected("62 00", "-> -8")}),
    SentenceName());

INSTANTIATE_TEST_SUITE_P(NotAllowed, StatusCheckTest,
                         testing::Values(StatusRow{.sentence = "a fixed terminal in its menu",
                                                   .script = Requested("69 00"),
                                                   .result = Readiness::Ready,
                                                   .box = MenuActive},
                                         StatusRow{.sentence = "a fixed PKTDM",
                                                   .known = {.product = u"PKTDM"},
                                                   .script = Requested("69 00"),
                                                   .result = Readiness::Ready,
                                                   .box = MenuActive},
                                         StatusRow{.sentence = "a mobile terminal that is locked",
                                                   .known = {.mobile = true},
                                                   .script = Requested("69 00"),
                                                   .result = Readiness::Ready,
                                                   .box = Locked}),
                         SentenceName());

TEST(StatusCheckLinkTest, ALinkThatIsStillOpenIsClosedFirst) {
  Dialogue dialogue("open 3\nclose\n" + Requested("6D 00"));
  Link link(dialogue);
  ASSERT_EQ(link.session.CtOpen(Port(3)), 0);
  TerminalInfo info;
  EXPECT_EQ(CheckStatus({link.session, Port(1), info, link.dialogs}), Readiness::NotReady);
}

TEST(StatusCheckLinkTest, EveryFaultAtEitherExchangeLeavesTheLinkClosed) {
  const std::string script = Selected("90 00", "90 00");
  for (int faulty = 1; faulty <= 2; ++faulty) {
    for (const Fault& fault : AllFaults()) {
      SCOPED_TRACE("exchange " + std::to_string(faulty) + ", " + fault.Name());
      AnswerBook book(script);
      FaultyApi api(book, faulty, fault);
      Link link(api);
      TerminalInfo info;
      EXPECT_EQ(CheckStatus({link.session, Port(1), info, link.dialogs}),
                faulty == 1 ? Readiness::NotReady : Readiness::Ready);
      EXPECT_FALSE(link.session.IsOpen());
      EXPECT_EQ(api.Calls().back(), u"close");
      EXPECT_TRUE(link.dialogs.boxes.empty());
    }
  }
}

}  // namespace
}  // namespace kartocheck::test
