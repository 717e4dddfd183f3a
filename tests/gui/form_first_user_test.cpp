#include "ui/form_first_user.h"

#include <QApplication>
#include <QFile>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

#include <gtest/gtest.h>

#include "gui/support/screen.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

// The words of the RTF document, found without its reader: groups of tables left out, escapes
// replaced, control words dropped.
QString WordsOfDocument() {
  QFile file(QStringLiteral(":/texts/benutzerinformation.rtf"));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  QString text = QString::fromLatin1(file.readAll());
  text.remove(QRegularExpression(QStringLiteral("\\{\\\\fonttbl.*?\\}\\}")));
  text.remove(u'\r').remove(u'\n');
  const std::pair<const char16_t*, const char16_t*> escapes[] = {
      {u"\\'e4", u"ä"}, {u"\\'f6", u"ö"}, {u"\\'fc", u"ü"}, {u"\\'c4", u"Ä"}, {u"\\'d6", u"Ö"},
      {u"\\'dc", u"Ü"}, {u"\\'df", u"ß"}, {u"\\'84", u"„"}, {u"\\'93", u"“"}, {u"\\~", u" "},
  };
  for (const auto& [escape, character] : escapes) {
    text.replace(QStringView(escape).toString(), QStringView(character).toString());
  }
  text.replace(QRegularExpression(QStringLiteral("\\\\(par|tab)\\b ?")), QStringLiteral("\n"));
  text.remove(QRegularExpression(QStringLiteral("\\\\[a-z]+-?[0-9]* ?")));
  EXPECT_FALSE(text.contains(u'\\')) << text.toStdString();
  return text.remove(u'{').remove(u'}').simplified();
}

class FirstUserTest : public testing::Test {
 protected:
  FirstUserTest() { window.show(); }

  QTextEdit& Box() { return screen.Find<QTextEdit>(QStringLiteral("RichTextBox1")); }
  QString ShownText() { return Box().toPlainText().replace(QChar(0xA0), u' '); }

  void ExpectClosed(bool continues) {
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.ContinueFlag(), continues);
  }

  Form_FirstUser window{nullptr};
  Screen screen{window};
};

TEST_F(FirstUserTest, HasItsCaptions) {
  EXPECT_EQ(window.objectName(), u"Form_FirstUser");
  EXPECT_EQ(window.windowTitle(), u"Benutzer Information zu KartoCheck");
  const auto& quit = screen.Find<QPushButton>(QStringLiteral("Command1_0"));
  EXPECT_EQ(quit.text(), u"&Beenden");
  EXPECT_EQ(quit.toolTip(), u"Beendet KartoCheck");
  EXPECT_EQ(screen.Find<QPushButton>(QStringLiteral("Command1_1")).text(),
            u"Weiter mit KartoCheck");
}

TEST_F(FirstUserTest, ShowsEveryWordOfTheDocument) {
  EXPECT_EQ(ShownText().simplified(), WordsOfDocument());
}

TEST_F(FirstUserTest, TheDocumentIsInCodePage1252AndArial) {
  QFile file(QStringLiteral(":/texts/benutzerinformation.rtf"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray document = file.readAll();
  EXPECT_TRUE(document.startsWith("{\\rtf1\\ansi\\ansicpg1252"));
  EXPECT_TRUE(document.contains("Arial;"));
  for (const char c : document) EXPECT_LT(static_cast<unsigned char>(c), 0x80);
}

TEST_F(FirstUserTest, TellsEveryPointInNumberedSteps) {
  const std::vector<std::vector<const char16_t*>> points{
      {u"Service- und Testwerkzeug für Softwareentwickler", u"nicht für die Abrechnung",
       u"zertifiziert", u"Jede andere Verwendung ist nicht gestattet."},
      {u"mobilen Terminals", u"löscht den gelesenen Datensatz"},
      {u"Anschlusskabel für die serielle Schnittstelle"},
      {u"Terminal einschalten"},
      {u"Ausgabemedium auf „PC-ASN.1“ oder „PC-Festformat“"},
      {u"9600 Baud, gerade Parität, 8 Datenbits und 1 Stoppbit"},
      {u"zwischen dem kompatiblen Modus und dem Modus „MKT“"},
      {u"jede andere Anwendung, die das Terminal benutzt"},
      {u"funktionierende Krankenversichertenkarte (KVK) oder elektronische Gesundheitskarte (eGK)",
       u"gespeicherter Datensatz"},
  };
  const QStringList lines = ShownText().split(u'\n');
  for (std::size_t step = 0; step < points.size(); ++step) {
    const QString number = QString::number(step + 1) + u".\t";
    const auto line = std::find_if(lines.begin(), lines.end(),
                                   [&](const QString& text) { return text.startsWith(number); });
    ASSERT_NE(line, lines.end()) << step + 1;
    for (const auto* point : points[step]) {
      EXPECT_TRUE(line->contains(QStringView(point)))
          << QStringView(point).toString().toStdString();
    }
  }
}

TEST_F(FirstUserTest, IsFormatted) {
  const QTextDocument& document = *Box().document();
  const QTextBlock title = document.begin();
  const QTextCharFormat titleFormat = title.begin().fragment().charFormat();
  EXPECT_EQ(title.text(), u"Benutzer Information zu KartoCheck");
  EXPECT_EQ(titleFormat.fontWeight(), QFont::Bold);
  EXPECT_EQ(titleFormat.fontFamilies().toStringList(), QStringList{QStringLiteral("Arial")});

  int steps = 0;
  for (QTextBlock block = document.begin(); block != document.end(); block = block.next()) {
    if (!block.text().contains(u'\t')) continue;
    ++steps;
    auto piece = block.begin();
    EXPECT_EQ(piece.fragment().charFormat().fontWeight(), QFont::Bold);
    EXPECT_LT(piece.fragment().charFormat().fontPointSize(), titleFormat.fontPointSize());
    EXPECT_EQ((++piece).fragment().charFormat().fontWeight(), QFont::Normal);
    EXPECT_GT(block.blockFormat().leftMargin(), 0);
    EXPECT_EQ(block.blockFormat().textIndent(), -block.blockFormat().leftMargin());
  }
  EXPECT_EQ(steps, 9);
}

// Qt would open it no larger than two thirds of the screen.
TEST_F(FirstUserTest, OpensAsLargeAsItsTextNeedsWhereTheScreenHasTheRoom) {
  const QSize available = window.screen()->availableSize();
  EXPECT_EQ(window.size(), window.sizeHint().boundedTo(available));
  EXPECT_GE(Box().height(), Box().sizeHint().height());
  EXPECT_GT(window.height(), available.height() * 2 / 3);
}

TEST_F(FirstUserTest, GrowsWithTheFont) {
  const auto size = [this] {
    return Box().document()->begin().begin().fragment().charFormat().fontPointSize();
  };
  const double before = size();
  QFont large = window.font();
  large.setPointSizeF(large.pointSizeF() * 2);
  window.setFont(large);
  EXPECT_NEAR(size(), 2 * before, 0.01);
  EXPECT_EQ(ShownText().simplified(), WordsOfDocument());
}

TEST_F(FirstUserTest, TheTextCanBeSelectedButNotChanged) {
  const QString before = ShownText();
  QTest::keyClicks(&Box(), QStringLiteral("x"));
  EXPECT_EQ(ShownText(), before);
  Box().selectAll();
  EXPECT_TRUE(Box().textCursor().hasSelection());
}

TEST_F(FirstUserTest, QuitEndsTheProgram) {
  screen.Click(QStringLiteral("Command1_0"));
  ExpectClosed(false);
}

TEST_F(FirstUserTest, ContinueGoesOn) {
  screen.Click(QStringLiteral("Command1_1"));
  ExpectClosed(true);
}

TEST_F(FirstUserTest, EnterGoesOn) {
  QTest::keyClick(&window, Qt::Key_Return);
  ExpectClosed(true);
}

TEST_F(FirstUserTest, EnterInTheTextGoesOn) {
  Activate(window);
  Box().setFocus();
  QTest::keyClick(&Box(), Qt::Key_Return);
  ExpectClosed(true);
}

TEST_F(FirstUserTest, TheCloseBoxGoesOn) {
  window.close();
  ExpectClosed(true);
}

TEST_F(FirstUserTest, EscapeGoesOnWhateverHasTheFocus) {
  for (const auto* name : {u"Command1_0", u"Command1_1", u"RichTextBox1"}) {
    window.show();
    const QString control = QStringView(name).toString();
    screen.Find(control).setFocus();
    screen.Press(control, Qt::Key_Escape);
    ExpectClosed(true);
  }
}

TEST_F(FirstUserTest, TheTabKeyWalksThroughEverything) {
  Activate(window);
  QStringList names;
  for (int step = 0; step < 3; ++step) {
    names << QApplication::focusWidget()->objectName();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  names.sort();
  EXPECT_EQ(names.join(u' '), u"Command1_0 Command1_1 RichTextBox1");
}

}  // namespace
}  // namespace kartocheck::test
