#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "console/console_fixture.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

struct AnswerRow {
  const char* sentence;
  std::deque<std::string> typed;
  std::vector<const char*> boxes;  // how the boxes begin, in order
  std::size_t left = 0;            // lines that nobody asked for

  friend std::ostream& operator<<(std::ostream& out, const AnswerRow& row) {
    return out << row.sentence;
  }
};

constexpr const char* Cable =
    "Haben Sie das Norva Chipkartenterminal mit dem \n                     Anschlu";
constexpr const char* CableAdvice = "Schalten Sie bitte Ihren PC aus";
constexpr const char* Power =
    "Haben Sie das Norva Chipkartenterminal mit dem \n                     mitgelief";
constexpr const char* PowerAdvice = "Schließen Sie das Norva";
constexpr const char* Format = "Haben Sie am Norva Chipkartenterminal das Ausgabeformat";
constexpr const char* FormatAdvice = "Damit Kartendaten";
constexpr const char* Baud = "Haben Sie am Norva Chipkartenterminal die richtige";
constexpr const char* BaudAdvice = "Stellen Sie jetzt";
constexpr const char* Closing = "Es ist keine weitere Fehlerquelle bekannt.";

class ConsoleDiagnosisTest : public testing::TestWithParam<AnswerRow> {};

TEST_P(ConsoleDiagnosisTest, AnswersLeadThroughTheQuestions) {
  const AnswerRow& row = GetParam();
  Console console(row.typed);
  console.practice.Attach(1, {});
  EXPECT_EQ(console.Diagnose(1), exit_status::NoTerminal);
  const std::string text = console.messages.str();
  const std::string title = "KartoCheck Diagnose: ";
  std::size_t at = 0;
  for (const char* box : row.boxes) {
    at = text.find(title, at);
    ASSERT_NE(at, std::string::npos) << box;
    EXPECT_EQ(text.substr(at + title.size()).find(box), 0U) << box << "\n" << text;
    at += title.size();
  }
  EXPECT_EQ(text.find(title, at), std::string::npos) << "no more boxes";
  EXPECT_EQ(console.typed.size(), row.left);
}

INSTANTIATE_TEST_SUITE_P(
    Console, ConsoleDiagnosisTest,
    testing::Values(
        AnswerRow{"n is No", {"n"}, {Cable, CableAdvice}},
        AnswerRow{"j is Yes", {"j", "n"}, {Cable, Power, PowerAdvice}},
        AnswerRow{"whole words in any case", {"Ja", "NEIN"}, {Cable, Power, PowerAdvice}},
        AnswerRow{
            "blanks around an answer do not count", {"  j ", "\tn\r"}, {Cable, Power, PowerAdvice}},
        AnswerRow{"Enter takes the default, Yes",
                  {"", "", "", ""},
                  {Cable, Power, Format, Baud, Closing}},
        AnswerRow{"blanks alone are Enter", {"  ", "n"}, {Cable, Power, PowerAdvice}},
        AnswerRow{"four times Yes", {"j", "j", "j", "j"}, {Cable, Power, Format, Baud, Closing}},
        AnswerRow{"No to the format", {"j", "j", "n"}, {Cable, Power, Format, FormatAdvice}},
        AnswerRow{"No to the rate", {"j", "j", "j", "n"}, {Cable, Power, Format, Baud, BaudAdvice}},
        AnswerRow{"anything else asks again",
                  {"vielleicht", "y", "jn", "0", "\x1B[A", "n"},
                  {Cable, CableAdvice}},
        AnswerRow{"the end of the input is No", {}, {Cable, CableAdvice}},
        AnswerRow{"the end of the input at a later question",
                  {"j", "j"},
                  {Cable, Power, Format, FormatAdvice}},
        AnswerRow{"lines that nobody asks for stay", {"n", "j"}, {Cable, CableAdvice}, 1}),
    SentenceName());

TEST(ConsoleDiagnosisTest, AQuestionNamesItsAnswersAndTheDefault) {
  Console console({"was", "n"});
  (void)console.Diagnose(1);
  const std::string text = console.messages.str();
  EXPECT_NE(text.find("\nJa / Nein [J/n] Ja / Nein [J/n] KartoCheck Diagnose: Schalten"),
            std::string::npos)
      << text;
}

TEST(ConsoleDiagnosisTest, TheEndOfTheInputEndsItsLine) {
  Console console(std::deque<std::string>{});
  (void)console.Diagnose(1);
  EXPECT_NE(console.messages.str().find("Ja / Nein [J/n] \nKartoCheck Diagnose: Schalten"),
            std::string::npos);
}

TEST(ConsoleDiagnosisTest, TheCheckReadsAndReportsThePort) {
  Console console({"j", "n"});
  console.practice.Attach(2, PortOf("kvk-60"));
  EXPECT_EQ(console.Diagnose(2), exit_status::DataRead);
  EXPECT_NE(console.messages.str().find("Programm prüft die serielle Schnittstelle COM 2\n"
                                        "Die Krankenversichertendaten lesen\n"),
            std::string::npos);
  EXPECT_TRUE(console.out.str().starts_with("\nCOM 2 (CTAPI pn=2)\n")) << console.out.str();
  EXPECT_NE(console.out.str().find("Familienname:                   Größl\n"), std::string::npos);
  EXPECT_EQ(console.practice.OpenLinks(), 0U);
}

// The prompt of a fixed terminal offers OK in the diagnosis, that of a mobile one Cancel.
TEST(ConsoleDiagnosisTest, EnterAtThePromptTakesItsDefault) {
  Console fixed({"j", "n", "", "n"});
  fixed.practice.Attach(1, PortOf("keine-karte"));
  EXPECT_EQ(fixed.Diagnose(1), exit_status::NoData);
  EXPECT_NE(fixed.messages.str().find("OK / Abbrechen [J/n] Die Krankenversichertendaten werden "
                                      "gelesen\n"),
            std::string::npos)
      << fixed.messages.str();
  EXPECT_TRUE(fixed.typed.empty()) << "the read asks for another try";

  Console mobile({"j", "n", ""});
  ctapi::SimulatedPort port;
  port.Terminal.emplace(ctapi::ProfileOf("vedraF").value());
  mobile.practice.Attach(1, port);
  EXPECT_EQ(mobile.Diagnose(1), exit_status::NoData);
  EXPECT_NE(mobile.messages.str().find("OK / Abbrechen [j/N] Die Krankenversichertendaten werden "
                                       "angezeigt\n"),
            std::string::npos)
      << mobile.messages.str();
}

TEST(ConsoleDiagnosisTest, TheEndOfTheInputAtThePromptIsCancel) {
  Console console({"j", "n"});
  console.practice.Attach(1, PortOf("keine-karte"));
  EXPECT_EQ(console.Diagnose(1), exit_status::NoData);
  EXPECT_EQ(console.messages.str().find("werden gelesen"), std::string::npos);
}

// A record is erased only where a person agrees.
TEST(ConsoleDiagnosisTest, APersonIsAskedBeforeARecordIsErased) {
  for (const char* answer : {"j", "n", ""}) {
    Console console({"j", "n", answer});
    console.practice.Attach(1, PortOf("delta"));
    const bool agrees = *answer == 'j';
    EXPECT_EQ(console.Diagnose(1), agrees ? exit_status::DataRead : exit_status::NoData);
    EXPECT_EQ(console.practice.TerminalAt(1)->StoredRecords(), agrees ? 0U : 1U);
  }
}

TEST(ConsoleDiagnosisTest, AFurtherPortIsDiagnosedByItsNumber) {
  Console console({"j", "n"});
  console.practice.Attach(8200, PortOf("omega"));
  EXPECT_EQ(console.Diagnose(8200), exit_status::DataRead);
  EXPECT_TRUE(console.out.str().starts_with("\nUSB Device 9 (CTAPI pn=8200)\n"));
  EXPECT_NE(console.messages.str().find("USB Device 9\n"), std::string::npos);
}

TEST(ConsoleDiagnosisTest, ARequestToEndAsksNothingMore) {
  Console console({"j", "n", "j", "j"});
  console.practice.Attach(1, PortOf("keine-karte"));
  console.eventLoop.onYield = [&] { console.module.ExitRequested = true; };
  (void)console.Diagnose(1);
  EXPECT_EQ(console.typed.size(), 2U) << "the prompt is not asked";
}

}  // namespace
}  // namespace kartocheck::test
