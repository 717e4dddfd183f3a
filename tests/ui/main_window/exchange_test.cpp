#include <array>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "support/printing.h"
#include "support/sentence_name.h"
#include "ui/main_window/simulated_window.h"
#include "ui/main_window/window_fixture.h"

// What stands on a port is exchanged between two actions, in every pairing of what the bundled
// scenarios have on a port: nothing of the first shows after the second.

namespace kartocheck::test {
namespace {

constexpr int Port = 1;

enum class Acting { Scan, Diagnose, ResetAndRead };

std::ostream& operator<<(std::ostream& out, Acting acting) {
  constexpr std::array<const char*, 3> Names{"full scan", "diagnosis", "reset and read"};
  return out << Names.at(static_cast<std::size_t>(acting));
}

// A user who agrees to erase records, but otherwise to nothing; the questions of a diagnosis lead
// to its port check.
void AnswerAsUser(SimulatedWindow& window) {
  window.dialogs.answerSafely = true;
  window.dialogs.onAsk = [&window](const Question& question) {
    const bool isDiagnosis = question.title == u" KartoCheck Diagnose ";
    const bool isCable = question.text.contains(u"Anschlußkabel");
    if (question.consequence == Consequence::ErasesRecord) window.dialogs.answers = {Answer::Yes};
    if (isDiagnosis) window.dialogs.answers = {isCable ? Answer::Yes : Answer::No};
  };
  // There is nothing on further ports.
  window.onCall = [&window](const std::string& call) {
    if (call.ends_with(" COM 5")) window.flow.EndSearch();
  };
}

void Act(SimulatedWindow& window, Acting action) {
  switch (action) {
    case Acting::Scan:
      return window.flow.Button(ScanButton);
    case Acting::Diagnose:
      return window.flow.Button(DiagnosisButton);
    case Acting::ResetAndRead:
      window.flow.Button(ResetButton);
      return window.flow.Button(ReadButton);
  }
}

// All that can be seen of the port.
struct Seen {
  explicit Seen(SimulatedWindow& window)
      : tab(StatusTabOf(window.module, Port)),
        data(window.frontEnd.frames.empty() ? EmptyDataFrame() : window.frontEnd.frames.back()),
        frame(window.frontEnd.shownFrames.back()) {
    window.flow.Button(CopyButton);
    clipboard = window.frontEnd.clipboard.back();
    const EgkInfo egk = window.flow.CurrentEgkInfo();
    egkTexts.push_back(egk.xmlTexts);
    for (const InfoLine& line : egk.lines) egkTexts.push_back(line.text);
    for (const ElementList& list : egk.lists) {
      egkTexts.push_back(list.validationText);
      for (const VsdField& field : list.rows) egkTexts.push_back(field.name + u'=' + field.value);
    }
  }

  void ExpectSame(const Seen& other) const {
    EXPECT_EQ(tab, other.tab);
    EXPECT_EQ(data.title, other.data.title);
    EXPECT_EQ(data.labels, other.data.labels);
    EXPECT_EQ(data.values, other.data.values);
    EXPECT_EQ(frame, other.frame);
    EXPECT_EQ(clipboard, other.clipboard);
    EXPECT_EQ(egkTexts, other.egkTexts);
  }

  StatusTab tab;
  DataFrame data;
  int frame;
  QString clipboard;
  std::vector<QString> egkTexts;
};

class ExchangeTest : public testing::TestWithParam<Acting> {};

TEST_P(ExchangeTest, NothingOfTheFirstShowsAfterTheSecond) {
  const std::vector<PortKind> kinds = AllPortKinds();
  ASSERT_GT(kinds.size(), 50U);
  int readFirst = 0;
  for (const PortKind& second : kinds) {
    SimulatedWindow fresh;
    AnswerAsUser(fresh);
    fresh.practice.Attach(Port, second.port);
    Act(fresh, GetParam());
    const Seen expected(fresh);
    for (const PortKind& first : kinds) {
      SCOPED_TRACE(first.name + ", then " + second.name);
      SimulatedWindow window;
      AnswerAsUser(window);
      window.practice.Attach(Port, first.port);
      Act(window, GetParam());
      if (window.module.Terminals[Port].DataRead) ++readFirst;
      window.practice.Attach(Port, second.port);
      Act(window, GetParam());
      Seen(window).ExpectSame(expected);
      EXPECT_EQ(window.module.Terminals[Port].DataRead, fresh.module.Terminals[Port].DataRead);
      if (HasFailure()) return;
    }
  }
  EXPECT_GT(readFirst, 1000);
}

INSTANTIATE_TEST_SUITE_P(MainWindow, ExchangeTest,
                         testing::Values(Acting::Scan, Acting::Diagnose, Acting::ResetAndRead),
                         SentenceName());

}  // namespace
}  // namespace kartocheck::test
