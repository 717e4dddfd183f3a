#include <QApplication>
#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "gui/support/box_answerer.h"
#include "gui/support/simulated_program.h"
#include "gui/support/window_visitor.h"
#include "platform/qt/qt_event_loop.h"
#include "support/fake_dialogs.h"
#include "support/open_module.h"
#include "support/printing.h"
#include "support/sentence_name.h"
#include "support/simulated_ports.h"

// The window during and after a scan: closing, staying alive, and forgetting what was exchanged.

namespace kartocheck::test {
namespace {

const QString ResultWindow = QStringLiteral("Form_DatenInfo");

TEST(ScanWindowTest, ACloseRequestDuringTheSweepClosesAtItsEndWithoutAQuestion) {
  SimulatedProgram program(QStringLiteral("kvk-60"));
  const BoxAnswerer user({});
  int last = 0;
  program.library.beforeInit = [&](int pn) {
    last = pn;
    EXPECT_TRUE(program.window.isVisible());
    if (pn == 40) {
      EXPECT_FALSE(program.window.close());
    }
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  EXPECT_FALSE(program.window.isVisible());
  EXPECT_EQ(last, 40) << "the sweep ends";
  EXPECT_FALSE(program.module.Busy);
}

TEST(ScanWindowTest, AfterNoToTheExitQuestionTheProgramGoesOn) {
  SimulatedProgram program(QStringLiteral("kvk-60"));
  {
    const WindowVisitor visitor(ResultWindow, [](QWidget&) {});
    program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  }
  BoxAnswerer user({PressButton(QMessageBox::No)});
  EXPECT_FALSE(program.window.close());
  ASSERT_EQ(user.seen.size(), 1U);
  EXPECT_EQ(user.seen[0].title, u"Beendet KartoCheck ");
  EXPECT_TRUE(program.window.isVisible());
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_9")), u"Größl");

  program.Click(QStringLiteral("CmdB_MKt_Test_5"));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_9")), u"Größl") << "and reads";
  {
    const WindowVisitor visitor(ResultWindow, [](QWidget&) {});
    program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  }
  EXPECT_TRUE(program.window.isVisible()) << "and scans";
}

TEST(ScanWindowTest, TheGuidedQuestionsAsTheyStandOnTheScreen) {
  SimulatedProgram program(QStringLiteral("kvk-60"));
  BoxAnswerer user(
      {PressKey(Qt::Key_Return), PressButton(QMessageBox::No), PressKey(Qt::Key_Return)});
  std::vector<QString> steps;
  program.library.beforeInit = [&](int) {
    if (steps.empty()) steps.push_back(program.Text(QStringLiteral("Labe_DialogSchritt")));
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_1"));
  ASSERT_EQ(user.seen.size(), 3U);
  const QStringList yesNo{QStringLiteral("Ja"), QStringLiteral("Nein")};
  for (const std::size_t box : {0U, 1U}) {
    EXPECT_EQ(user.seen[box].title, u" KartoCheck Diagnose ");
    EXPECT_EQ(user.seen[box].icon, QMessageBox::Question);
    EXPECT_EQ(user.seen[box].buttons, yesNo);
    EXPECT_EQ(user.seen[box].preselected, u"Ja");
  }
  EXPECT_TRUE(user.seen[0].text.startsWith(
      u"Haben Sie das Norva Chipkartenterminal mit dem \nAnschlußkabel für"));
  EXPECT_EQ(user.seen[2].icon, QMessageBox::Critical);
  EXPECT_EQ(user.seen[2].buttons, QStringList{QStringLiteral("OK")});
  EXPECT_EQ(program.Text(QStringLiteral("Labe_DialogPort")), u"COM 1");
  EXPECT_EQ(steps, std::vector{QStringLiteral("Stromversorgung")});
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_9")), u"Größl");
  EXPECT_TRUE(program.Find(QStringLiteral("Fram_Show_3")).isVisible());
}

// Longest time between two turns of the event loop, in milliseconds.
class TurnWatch {
 public:
  TurnWatch() {
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      const std::clock_t now = std::clock();
      longest_ = std::max(longest_, now - last_);
      last_ = now;
      ++turns_;
    });
    timer_.start(0);
  }

  // Processor time, which other programs on the machine do not lengthen.
  [[nodiscard]] std::clock_t LongestMs() const { return longest_ * 1000 / CLOCKS_PER_SEC; }
  [[nodiscard]] int Turns() const { return turns_; }

 private:
  QTimer timer_;
  std::clock_t last_ = std::clock();
  std::clock_t longest_ = 0;
  int turns_ = 0;
};

class PaintCounter : public QObject {
 public:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints;
    return false;
  }
  int paints = 0;
};

// The window over simulated ports, whose library returns at once, and a user who answers by rule
// instead of in boxes.
template <typename Loop>
class RuledProgram : public Screen {
 public:
  RuledProgram()
      : Screen(window),
        window({}),
        module({.api = api,
                .dialogs = dialogs,
                .display = window,
                .eventLoop = eventLoop,
                .serial = serial,
                .directory = directory,
                .terminate = [](const auto&) { std::abort(); }}),
        flow(module, dialogs, window, view, window) {
    dialogs.answerSafely = true;
    dialogs.onAsk = [this](const Question& question) {
      const bool isDiagnosis = question.title == u" KartoCheck Diagnose ";
      const bool isCable = question.text.contains(u"Anschlußkabel");
      if (question.consequence == Consequence::ErasesRecord) dialogs.answers = {Answer::Yes};
      if (isDiagnosis) dialogs.answers = {isCable ? Answer::Yes : Answer::No};
    };
    window.Attach(flow, view, module);
    window.show();
  }

  ctapi::SimulatedPractice practice;
  CtApiSimulated api{practice};
  SerialPortSimulated serial{practice};
  PortDirectorySimulated directory{practice};
  FakeDialogs dialogs;
  Loop eventLoop;
  Form_MKT_Test window;
  OpenModule module;
  ViewState view;
  TestFlow flow;
};

TEST(ResponsivenessTest, TheWindowStaysAliveAndPaintedDuringAScan) {
  RuledProgram<QtEventLoop> program;
  program.practice.Attach(1, PortOf("egk-beispiel"));
  program.practice.Attach(2, {});
  program.practice.Attach(3, PortOf("kvk-60"));
  program.practice.Attach(8192, PortOf("omega"));
  PaintCounter status;
  PaintCounter progress;
  program.Find(QStringLiteral("Labl_StatusText")).installEventFilter(&status);
  program.Find(QStringLiteral("ProgressBar1")).installEventFilter(&progress);
  TurnWatch watch;
  {
    const WindowVisitor visitor(ResultWindow, [](QWidget&) {});
    program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  }
  EXPECT_TRUE(program.module.Terminals[1].DataRead);
  EXPECT_TRUE(program.module.Terminals[5].DataRead);
  EXPECT_LE(watch.LongestMs(), 300);
  EXPECT_GT(watch.Turns(), 1000);
  EXPECT_GT(status.paints, 100) << "of 520 texts";
  EXPECT_GT(progress.paints, 15);
  RecordProperty("longest_gap_ms", std::to_string(watch.LongestMs()));
}

// What is seen of a port on the screen.
std::vector<QString> SeenOf(Screen& program, int slot) {
  std::vector<QString> texts;
  texts.push_back(program.Find<QGroupBox>(QStringLiteral("Fram_Show_3")).title());
  for (int row = 0; row < DataRowCount; ++row) {
    texts.push_back(program.Text(QStringLiteral("Labl_Name_%1").arg(row)));
    texts.push_back(program.Text(QStringLiteral("Labl_Wert_%1").arg(row)));
  }
  for (int row = 0; row < StatusRowCount; ++row) {
    texts.push_back(program.Text(QStringLiteral("Labl_Status_%1_%2").arg(slot - 1).arg(row)));
  }
  for (int frame = 0; frame < 4; ++frame) {
    const bool visible = program.Find(QStringLiteral("Fram_Show_%1").arg(frame)).isVisible();
    texts.push_back(visible ? QStringLiteral("visible") : QStringLiteral("hidden"));
  }
  return texts;
}

struct Kind {
  const char* scenario;
  std::uint16_t port;
};

// One of each; the flows' own test goes through all of the bundled scenarios.
constexpr Kind Kinds[] = {{"gamma", 1},       {"kvk-fest231", 1},     {"egk-beispiel", 1},
                          {"delta", 1},       {"egk-gespeichert", 1}, {"omega-usb-com", 4},
                          {"keine-karte", 1}, {"zugeschlossen", 1},   {"leer", 1},
                          {"anschluesse", 2}, {"anschluesse", 3},     {"anschluesse", 4}};

// A port check with a read where there is a terminal: at the end of a diagnosis, or after a reset.
enum class Exchange { Diagnose, ResetAndRead };

std::ostream& operator<<(std::ostream& out, Exchange exchange) {
  return out << (exchange == Exchange::Diagnose ? "diagnosis" : "reset and read");
}

class ExchangeOnScreenTest : public testing::TestWithParam<Exchange> {
 protected:
  using QuickProgram = RuledProgram<QuickEventLoop>;

  static void Act(QuickProgram& program) {
    if (GetParam() == Exchange::Diagnose) {
      program.Click(QStringLiteral("CmdB_MKt_Test_1"));
    } else {
      program.Click(QStringLiteral("CmdB_MKt_Test_5"));
      program.Click(QStringLiteral("CmdB_MKt_Test_3"));
    }
  }
};

// One window throughout: whatever stood on COM 1 before, the screen shows what a fresh program
// shows of what stands there now.
TEST_P(ExchangeOnScreenTest, NothingOfTheFirstShowsAfterTheSecond) {
  std::vector<ctapi::SimulatedPort> ports;
  std::vector<std::vector<QString>> expected;
  for (const Kind& kind : Kinds) {
    ports.push_back(PortOf(kind.scenario, kind.port));
    QuickProgram fresh;
    fresh.practice.Attach(1, ports.back());
    Act(fresh);
    expected.push_back(SeenOf(fresh, 1));
  }
  QuickProgram program;
  for (std::size_t first = 0; first < ports.size(); ++first) {
    for (std::size_t second = 0; second < ports.size(); ++second) {
      SCOPED_TRACE(std::string(Kinds[first].scenario) + ", then " + Kinds[second].scenario);
      for (const std::size_t now : {first, second}) {
        program.practice.Attach(1, ports[now]);
        Act(program);
      }
      ASSERT_EQ(SeenOf(program, 1), expected[second]);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Gui, ExchangeOnScreenTest,
                         testing::Values(Exchange::Diagnose, Exchange::ResetAndRead),
                         SentenceName());

}  // namespace
}  // namespace kartocheck::test
