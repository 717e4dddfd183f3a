#include "ui/value_field.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

#include "gui/support/program.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

constexpr const char16_t* Hostile[] = {
    u"<b>x</b>", u"a & b", u"&amp;", u"&Datei", u"a && b", u"<img src='x'>", u"Zeile\tTab",
};

class ValueFieldTest : public testing::Test {
 protected:
  void ShowEverywhere(const QString& text) {
    DataFrame frame = EmptyDataFrame();
    frame.values.fill(text);
    program.view.data.Set(frame);
    TerminalInfo& info = program.module.Terminals[1];
    info.ModelName = text;
    info.DisplayText = text;
    program.view.statusTabs[1].Set(StatusTabOf(program.module, 1));
    program.window.ShowStatusText(text);
  }

  ValueField& Field(int row) {
    return program.Find<ValueField>(QStringLiteral("Labl_Wert_%1").arg(row));
  }

  // A picture of the field with this text, against one of a label that draws the text itself.
  QImage Picture(ValueField& field, const QString& text) {
    field.ShowValue(text);
    return field.grab().toImage();
  }

  Program program;
};

TEST_F(ValueFieldTest, EveryTextFromOutsideIsShownAsItIs) {
  for (const auto* text : Hostile) {
    const QString hostile = QStringView(text).toString();
    ShowEverywhere(hostile);
    for (const auto* name : {u"Labl_Wert_0", u"Labl_Wert_17", u"Labl_Status_0_2",
                             u"Labl_Status_0_6", u"Labl_StatusText"}) {
      const auto& label = program.Find<QLabel>(QStringView(name).toString());
      EXPECT_EQ(label.text(), hostile);
      EXPECT_EQ(label.textFormat(), Qt::PlainText);
      EXPECT_EQ(label.buddy(), nullptr) << "a buddy would make a mnemonic of the &";
    }
  }
}

TEST_F(ValueFieldTest, NoLabelOfTheWindowGuessesMarkup) {
  for (const auto* label : program.window.findChildren<QLabel*>()) {
    if (label->pixmap().isNull()) {
      EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->objectName().toStdString();
    }
  }
}

// Shown as markup or as a mnemonic, both texts of a pair would look the same.
TEST_F(ValueFieldTest, MarkupAndAmpersandLookDifferentFromWhatTheyWouldMean) {
  ValueField& field = Field(0);
  EXPECT_NE(Picture(field, QStringLiteral("&amp;")), Picture(field, QStringLiteral("&")));
  EXPECT_NE(Picture(field, QStringLiteral("a &b")), Picture(field, QStringLiteral("a b")));
  EXPECT_NE(Picture(field, QStringLiteral("a && b")), Picture(field, QStringLiteral("a & b")));
  EXPECT_NE(Picture(field, QStringLiteral("<i></i>x")), Picture(field, QStringLiteral("x")));
}

TEST_F(ValueFieldTest, KeyboardSelectsAndCopiesTheValue) {
  ValueField& field = Field(3);
  field.ShowValue(QStringLiteral("Hinter den Höfen 12 a"));
  Field(2).setFocus();
  QTest::keyClick(&Field(2), Qt::Key_Tab);
  EXPECT_TRUE(field.hasFocus());
  EXPECT_EQ(field.selectedText(), u"Hinter den Höfen 12 a");
  QTest::keyClick(&field, Qt::Key_Home);
  QTest::keyClick(&field, Qt::Key_Right, Qt::ShiftModifier | Qt::ControlModifier);
  EXPECT_EQ(field.selectedText().trimmed(), u"Hinter");
  QTest::keyClick(&field, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text().trimmed(), u"Hinter");
}

TEST_F(ValueFieldTest, MouseSelectsAWord) {
  ValueField& field = Field(0);
  field.ShowValue(QStringLiteral("Köln"));
  QTest::mouseDClick(&field, Qt::LeftButton, {}, QPoint(10, field.height() / 2));
  EXPECT_EQ(field.selectedText(), u"Köln");
}

TEST_F(ValueFieldTest, UpAndDownWalkThroughTheFields) {
  Field(4).setFocus();
  QTest::keyClick(&Field(4), Qt::Key_Down);
  EXPECT_TRUE(Field(5).hasFocus());
  QTest::keyClick(&Field(5), Qt::Key_Up);
  EXPECT_TRUE(Field(4).hasFocus());
}

TEST_F(ValueFieldTest, ScreenReadersHearCaptionAndValue) {
  QAccessibleInterface* field = QAccessible::queryAccessibleInterface(&Field(7));
  EXPECT_EQ(field->role(), QAccessible::EditableText);
  EXPECT_TRUE(field->state().readOnly);
  EXPECT_EQ(field->text(QAccessible::Name), u"Vorname:");
  EXPECT_EQ(field->text(QAccessible::Description), u"leer");
  Field(7).ShowValue(QStringLiteral("Änne"));
  EXPECT_EQ(field->text(QAccessible::Name), u"Vorname:");
  EXPECT_EQ(field->text(QAccessible::Description), QString());
  ASSERT_NE(field->textInterface(), nullptr);
  EXPECT_EQ(field->textInterface()->text(0, field->textInterface()->characterCount()), u"Änne");
  Field(7).SetCaption(QStringLiteral("Anderer Name:"));
  EXPECT_EQ(field->text(QAccessible::Name), u"Anderer Name:");
}

TEST_F(ValueFieldTest, TheLabelBesideItIsItsLabel) {
  QAccessibleInterface* field = QAccessible::queryAccessibleInterface(&Field(7));
  const auto labels = field->relations(QAccessible::Label);
  ASSERT_FALSE(labels.isEmpty());
  EXPECT_EQ(labels.first().first->object(), &program.Find(QStringLiteral("Labl_Name_7")));
}

TEST_F(ValueFieldTest, AScreenReaderSelectsInIt) {
  Field(7).ShowValue(QStringLiteral("Anna Maria"));
  QAccessibleTextInterface* text =
      QAccessible::queryAccessibleInterface(&Field(7))->textInterface();
  text->setSelection(0, 5, 10);
  EXPECT_EQ(Field(7).selectedText(), u"Maria");
  int start = 0;
  int end = 0;
  text->selection(0, &start, &end);
  EXPECT_EQ(start, 5);
  EXPECT_EQ(end, 10);
  text->removeSelection(0);
  EXPECT_EQ(text->selectionCount(), 0);
  text->setSelection(0, 5, 11);
  EXPECT_EQ(text->selectionCount(), 0) << "there is no such end";
}

TEST_F(ValueFieldTest, ALongValueIsWrapped) {
  const QString text = QStringLiteral("Wort ").repeated(20).left(97);
  for (int row = 0; row < DataRowCount; ++row) Field(row).ShowValue(text);
  const auto fits = [&] {
    for (int row = 0; row < DataRowCount; ++row) {
      if (Field(row).height() < Field(row).heightForWidth(Field(row).width())) return false;
    }
    return true;
  };
  EXPECT_TRUE(WaitUntil(fits));
  EXPECT_GT(Field(0).height(), 2 * Field(0).fontMetrics().height());
}

TEST_F(ValueFieldTest, ALongValueWithoutBlanksCanBeScrolledTo) {
  Field(0).ShowValue(QString(97, u'W'));
  const auto* area = program.Find(QStringLiteral("Fram_Show_3")).findChild<QScrollArea*>();
  const int needed = Field(0).fontMetrics().horizontalAdvance(Field(0).text());
  ASSERT_TRUE(WaitUntil([&] { return Field(0).width() >= needed; }));
  EXPECT_GT(area->horizontalScrollBar()->maximum(), 0);
}

}  // namespace
}  // namespace kartocheck::test
