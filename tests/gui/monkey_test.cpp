#include <QApplication>
#include <QElapsedTimer>
#include <QProgressBar>
#include <QRadioButton>

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <vector>

#include "gui/support/quick_event_loop.h"
#include "gui/support/random_user.h"
#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "support/open_module.h"
#include "support/printing.h"
#include "support/random_api.h"
#include "support/simulated_ports.h"
#include "ui/form_mkt_test.h"
#include "ui/main_window/run_recorder.h"
#include "ui/main_window/test_flow.h"
#include "ui/status_lamp.h"

// A user who does anything, at a window over a library that answers anything: what must hold after
// every deed. Longer, and with a seed that failed:
//   KARTOCHECK_MONKEY_SECONDS=600 KARTOCHECK_MONKEY_SEED=17 QT_QPA_PLATFORM=offscreen
//   kartocheck_gui_test --gtest_filter='*MonkeyTest*'

namespace kartocheck::test {
namespace {

int SecondsToRun() {
  constexpr int Few = 4;
  const int asked = qEnvironmentVariableIntValue("KARTOCHECK_MONKEY_SECONDS");
  return asked > 0 ? asked : Few;
}

std::vector<unsigned> Seeds() {
  const int asked = qEnvironmentVariableIntValue("KARTOCHECK_MONKEY_SEED");
  return asked > 0 ? std::vector<unsigned>{static_cast<unsigned>(asked)}
                   : std::vector<unsigned>{1, 2, 3, 4, 5};
}

// A practice with anything on its ports: on all of them, on some or on none.
ctapi::SimulatedPractice AnyPractice(std::mt19937& random) {
  static const std::vector<PortKind> Kinds = AllPortKinds();
  ctapi::SimulatedPractice practice;
  const auto quartersUsed = random() % 5;
  constexpr std::array<std::uint16_t, 7> Ports{1, 2, 3, 4, 5, 8192, 8193};
  for (const std::uint16_t pn : Ports) {
    if (random() % 4 >= quartersUsed) continue;
    ctapi::SimulatedPort port = Kinds[random() % Kinds.size()].port;
    port.Delay = {};
    practice.Attach(pn, std::move(port));
  }
  return practice;
}

// The program from its start until the user has it closed.
class MonkeyProgram {
 public:
  MonkeyProgram(unsigned percent, unsigned seed)
      : random_(seed),
        practice_(AnyPractice(random_)),
        library_(simulated_, percent, seed),
        user_(window_, seed) {
    library_.beforeCall = [this] {
      ++callsBeforeInterference_ %= CallsAtMost;
      if (callsBeforeInterference_ == interferes_) user_.Interfere();
    };
    window_.Attach(flow_, view_, module_);
    window_.OfferReport([] { return TestReport(); });
    window_.show();
    Activate(window_);
    view_.isActionRunning.Watch([this](bool isRunning) { hasActed_ = hasActed_ || isRunning; });
  }

  [[nodiscard]] bool IsOpen() const { return window_.isVisible(); }

  // One deed, and everything that comes of it.
  void Step() {
    interferes_ = random_() % CallsAtMost;
    user_.Act();
    ASSERT_TRUE(WaitUntil([&] { return IsSettled(); })) << user_.LastDeeds().toStdString();
    ExpectWhatAlwaysHolds();
    if (testing::Test::HasFailure()) FAIL() << user_.LastDeeds().toStdString();
  }

 private:
  // An action interferes with the user once in so many calls at most.
  static constexpr unsigned CallsAtMost = 400;

  [[nodiscard]] bool IsSettled() const {
    return !module_.IsBusy() && QApplication::activeModalWidget() == nullptr &&
           QApplication::activePopupWidget() == nullptr;
  }

  void ExpectWhatAlwaysHolds() {
    EXPECT_FALSE(module_.IsLinkOpen());
    EXPECT_FALSE(library_.IsOpen());
    EXPECT_EQ(practice_.OpenLinks(), 0U);
    EXPECT_FALSE(module_.IsExitRequested());
    EXPECT_FALSE(view_.isActionRunning.Value());
    for (const Lamp lamp : {Lamp::Card, Lamp::Terminal}) {
      const QString name = QStringLiteral("Shap_Lampe_%1").arg(static_cast<int>(lamp));
      EXPECT_EQ(screen_.Find<StatusLamp>(name).State(), LampState::Off);
    }
    EXPECT_EQ(IsOpen(), !user_.HasEnded()) << "the window closes when it is told to, and only then";
    if (IsOpen()) ExpectAWindowToGoOnWith();
  }

  void ExpectAWindowToGoOnWith() {
    for (int button = 0; button < ActionCount; ++button) {
      EXPECT_TRUE(screen_.Find(QStringLiteral("CmdB_MKt_Test_%1").arg(button)).isEnabled());
    }
    EXPECT_TRUE(screen_.Find(QStringLiteral("cmdeGK")).isEnabled());
    EXPECT_FALSE(screen_.Find(QStringLiteral("Butt_Abbrechen")).isVisible());
    EXPECT_EQ(window_.cursor().shape(), Qt::ArrowCursor);
    if (hasActed_) {
      EXPECT_NE(screen_.Text(QStringLiteral("Labl_StatusText")).trimmed(), QString());
      EXPECT_EQ(screen_.Find<QProgressBar>(QStringLiteral("ProgressBar1")).value(), 0);
    }
    int frames = 0;
    for (int frame = 0; frame < FrameCount; ++frame) {
      if (screen_.Find(QStringLiteral("Fram_Show_%1").arg(frame)).isVisible()) ++frames;
    }
    EXPECT_EQ(frames, 1);
    const QString chosen = QStringLiteral("Opti_Comx_%1").arg(module_.CurrentSlot - 1);
    EXPECT_TRUE(screen_.Find<QRadioButton>(chosen).isChecked()) << chosen.toStdString();
  }

  std::mt19937 random_;
  ctapi::SimulatedPractice practice_;
  CtApiSimulated simulated_{practice_};
  RandomApi library_;
  SerialPortSimulated serial_{practice_};
  PortDirectorySimulated directory_{practice_};
  QuickEventLoop eventLoop_;
  Form_MKT_Test window_{{}};
  RunRecorder recorder_{window_.Boxes(), window_, [] { return QTime(12, 0); }};
  OpenModule module_{{.api = library_,
                      .dialogs = recorder_,
                      .display = recorder_,
                      .eventLoop = eventLoop_,
                      .serial = serial_,
                      .directory = directory_,
                      .terminate = [this](const auto&) {
                        std::cerr << "the library was found unusable\n"
                                  << user_.LastDeeds().toStdString() << '\n';
                        std::abort();
                      }}};
  ViewState view_;
  TestFlow flow_{module_, recorder_, recorder_, view_, window_};
  Screen screen_{window_};
  RandomUser user_;
  unsigned callsBeforeInterference_ = 0;
  std::mt19937::result_type interferes_ = 0;
  bool hasActed_ = false;
};

class MonkeyTest : public testing::TestWithParam<unsigned> {};

TEST_P(MonkeyTest, FindsNothing) {
  constexpr std::array Percents{0U, 2U, 10U, 30U, 100U};
  std::mt19937 random(GetParam());
  QElapsedTimer time;
  time.start();
  const auto isTimeLeft = [&] { return time.elapsed() < SecondsToRun() * 1'000; };
  int programs = 0;
  int steps = 0;
  while (isTimeLeft() && !HasFailure()) {
    const unsigned percent = Percents.at(random() % Percents.size());
    MonkeyProgram program(percent, static_cast<unsigned>(random()));
    ++programs;
    for (int step = 0; step < 60 && program.IsOpen() && isTimeLeft() && !HasFailure(); ++step) {
      SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", program " + std::to_string(programs) +
                   ", step " + std::to_string(step));
      program.Step();
      ++steps;
    }
  }
  EXPECT_GT(steps, 0);
  std::cout << steps << " deeds at " << programs << " programs\n";
}

INSTANTIATE_TEST_SUITE_P(Seeds, MonkeyTest, testing::ValuesIn(Seeds()),
                         [](const auto& seed) { return "Seed" + std::to_string(seed.param); });

}  // namespace
}  // namespace kartocheck::test
