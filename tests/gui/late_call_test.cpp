#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "gui/support/library_program.h"
#include "gui/support/window_visitor.h"
#include "support/misbehaviour.h"
#include "support/printing.h"
#include "support/system.h"

// The window over a library that hangs or dies, see modules/misbehaving_library.cpp of the helper.

namespace kartocheck::test {
namespace {

using std::chrono::milliseconds;

const QString Read = QStringLiteral("CmdB_MKt_Test_3");
const QString FullScan = QStringLiteral("CmdB_MKt_Test_0");
const QString StatusText = QStringLiteral("Labl_StatusText");
const QString GiveUp = QStringLiteral("Butt_Abbrechen");
const QString GiveUpInWaitFrame = QStringLiteral("Butt_WartenAbbrechen");
const QString NotAnsweredYet = QStringLiteral("Das Terminal hat noch nicht geantwortet");
// Refuses whatever is asked, and notes it.
class Refuser {
 public:
  Refuser() {
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      texts.append(box->text());
      box->close();
    });
    timer_.start(milliseconds(5));
  }

  QStringList texts;

 private:
  QTimer timer_;
};

class LateCallTest : public testing::Test, public LibraryProgram {
 protected:
  explicit LateCallTest(milliseconds patience = milliseconds(50))
      : LibraryProgram(MISBEHAVING_LIBRARY, patience) {
    qputenv("ASAN_OPTIONS", SanitizersLookAway);
    qputenv("KARTOCHECK_SCENARIO", KARTOCHECK_SCENARIOS "/kvk-60.json");
  }
  ~LateCallTest() override { qunsetenv("KARTOCHECK_MISBEHAVIOUR"); }

  static void Misbehave(const char* plan) { qputenv("KARTOCHECK_MISBEHAVIOUR", plan); }

  // Does something each time that a call has become late.
  void WhenLate(const std::function<void()>& act) {
    pending.Late().Watch([act](bool isLate) {
      if (isLate) QTimer::singleShot(milliseconds(1), act);
    });
  }
};

TEST_F(LateCallTest, NothingIsOfferedWhileTheTerminalAnswers) {
  const Refuser user;
  screen.Click(Read);
  EXPECT_EQ(screen.Text(QStringLiteral("Labl_Wert_9")), u"Größl");
  EXPECT_FALSE(screen.Find(GiveUp).isVisible());
  EXPECT_FALSE(screen.Find(GiveUpInWaitFrame).isVisible());
}

TEST_F(LateCallTest, TheWindowLivesAndTellsIt) {
  Misbehave("data 5 wait");
  const Refuser user;
  bool isTold = false;
  WhenLate([&] {
    isTold = true;
    EXPECT_EQ(screen.Text(StatusText), NotAnsweredYet);
    EXPECT_TRUE(screen.Find(GiveUp).isVisible());
    const QSize size = window.size();
    window.resize(size + QSize(20, 20));
    EXPECT_TRUE(WaitUntil([&] { return window.size() != size; }));
    screen.Click(GiveUp);
  });
  screen.Click(Read);
  EXPECT_TRUE(isTold);
  EXPECT_FALSE(screen.Find(GiveUp).isVisible());
  EXPECT_TRUE(screen.Find(Read).isEnabled()) << "the action has ended";

  // The next open starts the library anew.
  Misbehave("none 0 none");
  screen.Click(Read);
  EXPECT_EQ(screen.Text(QStringLiteral("Labl_Wert_9")), u"Größl");
}

TEST_F(LateCallTest, EscapeGivesUp) {
  Misbehave("init 1 wait");
  const Refuser user;
  WhenLate([&] { QTest::keyClick(&window, Qt::Key_Escape); });
  screen.Click(Read);
  EXPECT_EQ(screen.Text(StatusText), u"Die Krankenversichertendaten werden angezeigt");
  const auto& entries = recorder.Entries();
  EXPECT_TRUE(std::any_of(entries.begin(), entries.end(), [](const RunEntry& entry) {
    return entry.text == u"Das Warten auf das Terminal wurde abgebrochen";
  })) << "the test report tells it";
}

TEST_F(LateCallTest, TheWaitFrameHasAButtonForIt) {
  Misbehave("init 1 wait");
  const Refuser user;
  const WindowVisitor visitor(QStringLiteral("Form_DatenInfo"), [](QWidget&) {});
  WhenLate([&] {
    EXPECT_TRUE(screen.Find(GiveUpInWaitFrame).isVisible());
    screen.Click(GiveUpInWaitFrame);
  });
  screen.Click(FullScan);
  EXPECT_FALSE(screen.Find(GiveUpInWaitFrame).isVisible());
}

// No call is late here.
class PatientTest : public LateCallTest {
 protected:
  PatientTest() : LateCallTest(std::chrono::minutes(1)) {}
};

// Without waiting for the port that the search is at.
TEST_F(PatientTest, EscapeEndsASearchAtOnce) {
  Misbehave("init 1 wait");
  const Refuser user;
  QString result;
  const WindowVisitor visitor(QStringLiteral("Form_DatenInfo"), [&](QWidget& shown) {
    result = Screen(shown).Text(QStringLiteral("Labe_DatenInfo1_1"));
  });
  QTimer::singleShot(milliseconds(100), &window, [&] { QTest::keyClick(&window, Qt::Key_Escape); });
  screen.Click(FullScan);
  EXPECT_EQ(result, u"Die Suche wurde beendet, bevor etwas gefunden war.");
  EXPECT_FALSE(module.PortOf(1).IsChecked);

  // The next open starts the library anew.
  Misbehave("none 0 none");
  screen.Click(Read);
  EXPECT_EQ(screen.Text(QStringLiteral("Labl_Wert_9")), u"Größl");
}

TEST_F(LateCallTest, AnAnswerThatComesAllTheSameIsTaken) {
  Misbehave("data 2 slow");
  const Refuser user;
  QStringList texts;
  pending.Late().Watch([&](bool) { texts.append(screen.Text(StatusText)); });
  screen.Click(Read);
  ASSERT_EQ(texts.size(), 3) << "now, late, not late any more";
  EXPECT_EQ(texts[1], NotAnsweredYet);
  EXPECT_EQ(texts[2], u"Die Krankenversichertendaten lesen") << "as before";
  EXPECT_EQ(screen.Text(QStringLiteral("Labl_Wert_9")), u"Größl");
}

TEST_F(LateCallTest, ClosingTheWindowDoesNotWaitForEver) {
  Misbehave("data 3 wait");
  const Refuser user;
  WhenLate([&] { window.close(); });
  screen.Click(Read);
  EXPECT_TRUE(WaitUntil([&] { return !window.isVisible(); }));
}

// The data of a stored record stand in the window behind the fatal message.
TEST_F(LateCallTest, WhatWasReadIsShownBehindTheFatalMessage) {
  qputenv("KARTOCHECK_SCENARIO", KARTOCHECK_SCENARIOS "/kvk-gespeichert.json");
  constexpr auto AtErase = "data 11 crash";
  Misbehave(AtErase);
  QString shown;
  const BoxAnswerer user({PressButton(QMessageBox::Yes), [&](QMessageBox& box) {
                            EXPECT_EQ(box.icon(), QMessageBox::Critical);
                            shown = screen.Text(QStringLiteral("Labl_Wert_9"));
                            box.accept();
                          }});
  EXPECT_THROW(flow.Button(static_cast<int>(Action::ReadCard)), Terminated);
  EXPECT_EQ(shown, u"Größl");
  EXPECT_EQ(fault,
            (LibraryFault{.Kind = LibraryFaultKind::EndedBySignal, .Number = MemoryFault()}));
}

}  // namespace
}  // namespace kartocheck::test
