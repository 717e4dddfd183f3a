#include "ui/message_boxes.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

class MessageBoxesTest : public testing::Test {
 protected:
  QWidget window;
  MessageBoxes boxes{window};
};

TEST_F(MessageBoxesTest, MessagesHaveTitleTextIconAndOk) {
  const std::pair<Icon, QMessageBox::Icon> rows[] = {
      {Icon::Information, QMessageBox::Information},
      {Icon::Question, QMessageBox::Question},
      {Icon::Exclamation, QMessageBox::Warning},
      {Icon::Critical, QMessageBox::Critical},
  };
  for (const auto& [icon, shown] : rows) {
    BoxAnswerer user({PressButton(QMessageBox::Ok)});
    boxes.Tell(icon, QStringLiteral(" KartoCheck "), QStringLiteral(" ERASE BINARY Error! "));
    const SeenBox& box = user.seen.at(0);
    EXPECT_EQ(box.title, u" KartoCheck ");
    EXPECT_EQ(box.text, u" ERASE BINARY Error! ");
    EXPECT_EQ(box.icon, shown);
    EXPECT_EQ(box.buttons, QStringList{QStringLiteral("OK")});
  }
}

TEST_F(MessageBoxesTest, LinesAndBlanksAreKept) {
  BoxAnswerer user({PressKey(Qt::Key_Escape)});
  boxes.Tell(Icon::Critical, QStringLiteral("Beendet KartoCheck "),
             QStringLiteral("\r\n\r\n Zeile 1 \r\n\r\n                          Zeile 2 "));
  EXPECT_EQ(user.seen.at(0).title, u"Beendet KartoCheck ");
  EXPECT_EQ(user.seen.at(0).text, u"\n\n Zeile 1 \n\n                          Zeile 2 ");
}

TEST_F(MessageBoxesTest, MarkupIsShownAsItIs) {
  BoxAnswerer user({PressKey(Qt::Key_Escape)});
  const QString text = QStringLiteral("<b>x</b> a & b &amp; <img src='http://example.org/'>");
  boxes.Tell(Icon::Information, QStringLiteral("<i>"), text);
  EXPECT_EQ(user.seen.at(0).text, text);
  EXPECT_EQ(user.seen.at(0).title, u"<i>");
  EXPECT_EQ(user.seen.at(0).format, Qt::PlainText);
}

struct QuestionRow {
  const char* description;
  Buttons buttons;
  Answer preselected;
  BoxAnswerer::Step step;
  Answer answer;
  const char16_t* highlighted;
};

TEST_F(MessageBoxesTest, QuestionsGiveTheAnswerOfTheButton) {
  const QuestionRow rows[] = {
      {"Yes is pressed", Buttons::YesNo, Answer::No, PressButton(QMessageBox::Yes), Answer::Yes,
       u"Nein"},
      {"No is pressed", Buttons::YesNo, Answer::Yes, PressButton(QMessageBox::No), Answer::No,
       u"Ja"},
      {"Enter takes the preselected Yes", Buttons::YesNo, Answer::Yes, PressKey(Qt::Key_Return),
       Answer::Yes, u"Ja"},
      {"Enter takes the preselected No", Buttons::YesNo, Answer::No, PressKey(Qt::Key_Return),
       Answer::No, u"Nein"},
      {"Escape is No", Buttons::YesNo, Answer::Yes, PressKey(Qt::Key_Escape), Answer::No, u"Ja"},
      {"the close box is No", Buttons::YesNo, Answer::Yes, CloseBox(), Answer::No, u"Ja"},
      {"a box taken away is No", Buttons::YesNo, Answer::Yes,
       [](QMessageBox& box) { box.reject(); }, Answer::No, u"Ja"},
      {"Ok is pressed", Buttons::OkCancel, Answer::Cancel, PressButton(QMessageBox::Ok), Answer::Ok,
       u"Abbrechen"},
      {"Cancel is pressed", Buttons::OkCancel, Answer::Ok, PressButton(QMessageBox::Cancel),
       Answer::Cancel, u"OK"},
      {"Enter takes the preselected Cancel", Buttons::OkCancel, Answer::Cancel,
       PressKey(Qt::Key_Return), Answer::Cancel, u"Abbrechen"},
      {"Escape is Cancel", Buttons::OkCancel, Answer::Ok, PressKey(Qt::Key_Escape), Answer::Cancel,
       u"OK"},
      {"the close box is Cancel", Buttons::OkCancel, Answer::Ok, CloseBox(), Answer::Cancel, u"OK"},
  };
  for (const QuestionRow& row : rows) {
    BoxAnswerer user({row.step});
    const Answer answer = boxes.Ask({.title = QStringLiteral(" KartoCheck "),
                                     .text = QStringLiteral(" Noch einmal versuchen? "),
                                     .icon = Icon::Exclamation,
                                     .buttons = row.buttons,
                                     .preselected = row.preselected});
    EXPECT_EQ(answer, row.answer) << row.description;
    const SeenBox& box = user.seen.at(0);
    EXPECT_EQ(box.preselected, row.highlighted) << row.description;
    EXPECT_EQ(box.icon, QMessageBox::Warning) << row.description;
    EXPECT_EQ(box.buttons.size(), 2) << row.description;
  }
}

TEST_F(MessageBoxesTest, ALineIsKeptWholeWhereQtWouldWrapIt) {
  const QMessageBox plain;
  const int widestOfQt = std::min(plain.screen()->availableSize().width() / 2, 500);
  QString line;
  while (plain.fontMetrics().horizontalAdvance(line) <= widestOfQt) line += u" Gerät";

  BoxAnswerer user({[&line](QMessageBox& box) {
    const auto* label = box.findChild<QWidget*>(QStringLiteral("qt_msgbox_label"));
    EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(line));
    box.close();
  }});
  boxes.Tell(Icon::Information, QString(), line);
  EXPECT_EQ(user.seen.size(), 1U);
}

TEST_F(MessageBoxesTest, ABoxIsNoHigherThanItsTextNeeds) {
  QSize plain;
  for (const QString& shown :
       {QString(), QStringLiteral("Eine Zeile"), QStringLiteral("1\r\n2\r\n3")}) {
    BoxAnswerer user({[&](QMessageBox& box) {
      const auto& label = *box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
      if (shown.isEmpty()) plain = box.size();
      const int text = label.heightForWidth(label.width());
      EXPECT_LT(box.height(), plain.height() + text + label.fontMetrics().lineSpacing());
      box.close();
    }});
    boxes.Tell(Icon::Information, QString(), shown);
  }
}

TEST_F(MessageBoxesTest, ATextHigherThanTheScreenScrollsBetweenPictureAndButtons) {
  const QString text = QStringLiteral("Zeile\r\n").repeated(300) + u"Ende";
  BoxAnswerer user({[](QMessageBox& box) {
    EXPECT_LE(box.height(), box.screen()->availableSize().height());
    const auto* area = box.findChild<QScrollArea*>();
    ASSERT_NE(area, nullptr);
    EXPECT_TRUE(area->isAncestorOf(box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))));
    EXPECT_TRUE(box.rect().contains(box.button(QMessageBox::Ok)->geometry()));
    const QScrollBar& bar = *area->verticalScrollBar();
    for (int page = 0; page < 300 && bar.value() < bar.maximum(); ++page) {
      QTest::keyClick(box.button(QMessageBox::Ok), Qt::Key_PageDown);
    }
    EXPECT_GT(bar.maximum(), 0);
    EXPECT_EQ(bar.value(), bar.maximum());
    box.close();
  }});
  boxes.Tell(Icon::Information, QString(), text);
  EXPECT_EQ(user.seen.size(), 1U);
  EXPECT_EQ(user.seen.at(0).text, QString(text).remove(u'\r'));
}

}  // namespace
}  // namespace kartocheck::test
