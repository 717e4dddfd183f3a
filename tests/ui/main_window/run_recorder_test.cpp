#include "ui/main_window/run_recorder.h"

#include <gtest/gtest.h>

#include "support/fake_dialogs.h"
#include "support/fake_display.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

class RunRecorderTest : public testing::Test {
 protected:
  std::vector<QString> Texts() {
    std::vector<QString> texts;
    for (const RunEntry& entry : recorder.Entries()) texts.push_back(entry.text);
    return texts;
  }

  FakeDialogs dialogs;
  FakeDisplay display;
  QTime now{8, 30, 15};
  RunRecorder recorder{dialogs, display, [this] { return now; }};
};

TEST_F(RunRecorderTest, KeepsStatusTextsMessagesAndAnswersInOrder) {
  dialogs.answers = {Answer::Yes, Answer::No, Answer::Ok, Answer::Cancel};
  recorder.ShowStatusText(QStringLiteral("Der MKT Status wird angezeigt"));
  recorder.Tell(Icon::Critical, QStringLiteral(" KartoCheck "),
                QStringLiteral(" Erste \r\n Zweite! "));
  for (const Buttons buttons :
       {Buttons::YesNo, Buttons::YesNo, Buttons::OkCancel, Buttons::OkCancel}) {
    (void)recorder.Ask({.title = QStringLiteral("Beendet KartoCheck "),
                        .text = QStringLiteral(" Noch einmal? "),
                        .buttons = buttons});
  }
  const QString question = QStringLiteral("Frage (Beendet KartoCheck):\r\nNoch einmal?");
  EXPECT_EQ(Texts(),
            (std::vector<QString>{
                QStringLiteral("Der MKT Status wird angezeigt"),
                QStringLiteral("Meldung (KartoCheck):\r\nErste \r\n Zweite!"), question,
                QStringLiteral("Antwort: Ja"), question, QStringLiteral("Antwort: Nein"), question,
                QStringLiteral("Antwort: OK"), question, QStringLiteral("Antwort: Abbrechen")}));
}

TEST_F(RunRecorderTest, NotesTheTime) {
  recorder.ShowStatusText(QStringLiteral("erst"));
  now = QTime(23, 59, 59);
  recorder.ShowStatusText(QStringLiteral("dann"));
  EXPECT_EQ(recorder.Entries()[0].time, QTime(8, 30, 15));
  EXPECT_EQ(recorder.Entries()[1].time, QTime(23, 59, 59));
}

TEST_F(RunRecorderTest, PassesEverythingOnUnchanged) {
  dialogs.answers = {Answer::Cancel};
  recorder.Tell(Icon::Exclamation, QStringLiteral(" T "), QStringLiteral(" a\r\nb "));
  EXPECT_EQ(recorder.Ask({.title = QStringLiteral("F"),
                          .text = QStringLiteral(" x "),
                          .icon = Icon::Critical,
                          .buttons = Buttons::OkCancel,
                          .preselected = Answer::Ok,
                          .consequence = Consequence::ErasesRecord}),
            Answer::Cancel);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].icon, Icon::Exclamation);
  EXPECT_EQ(dialogs.boxes[0].title, u" T ");
  EXPECT_EQ(dialogs.boxes[0].text, u" a\r\nb ");
  EXPECT_EQ(dialogs.boxes[1].icon, Icon::Critical);
  EXPECT_EQ(dialogs.boxes[1].preselected, Answer::Ok);
  EXPECT_EQ(dialogs.boxes[1].consequence, Consequence::ErasesRecord);

  recorder.ShowStatusText(QStringLiteral(" mit Leerzeichen "));
  EXPECT_EQ(display.statusTexts, std::vector<QString>{QStringLiteral(" mit Leerzeichen ")});
}

TEST_F(RunRecorderTest, KeepsOnlyTheLastOfALongRun) {
  const auto most = static_cast<int>(RunRecorder::MostEntries);
  const auto text = [](int entry) -> QString {
    return QChar(entry % 2 == 0 ? u'a' : u'b') + QString::number(entry);
  };
  for (int entry = 0; entry < most + 3; ++entry) recorder.ShowStatusText(text(entry));
  EXPECT_EQ(recorder.Entries().size(), RunRecorder::MostEntries);
  EXPECT_EQ(recorder.Entries().front().text, text(3));
  EXPECT_EQ(recorder.Entries().back().text, text(most + 2));
}

TEST_F(RunRecorderTest, OfALongRowOfNumbersTheLastStandsForTheOnesBefore) {
  for (int port = 1; port <= 256; ++port) {
    recorder.ShowStatusText(u"prüft COM " + QString::number(port));
  }
  recorder.ShowStatusText(QStringLiteral("prüft USB 1"));
  EXPECT_EQ(Texts(),
            (std::vector<QString>{QStringLiteral("prüft COM 1"), QStringLiteral("prüft COM 2"),
                                  QStringLiteral("prüft COM 3"), QStringLiteral("prüft COM 4"),
                                  QStringLiteral("prüft COM 256"), QStringLiteral("prüft USB 1")}));
  EXPECT_EQ(display.statusTexts.size(), 257U);
}

}  // namespace
}  // namespace kartocheck::test
