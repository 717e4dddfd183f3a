#include "ui/form_egk_info.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFontMetricsF>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>
#include <map>
#include <memory>

#include "gui/support/box_answerer.h"
#include "gui/support/screen.h"
#include "support/printing.h"
#include "ui/fixed_pitch_font.h"

namespace kartocheck::test {
namespace {

constexpr const char16_t* Markup = u"<b>x</b> & &amp; <img src='http://example.org/'>";

EgkData Card() {
  EgkData egk;
  egk.iccsn = QStringLiteral("80276001234567890123");
  egk.statusText = QStringLiteral("30") + QString(28, u'1') + QString(10, u'2') + QString(10, u'3');
  VsdDocument& pd = egk.documents[VsdKind::Pd];
  pd.fields[0] = {QStringLiteral("Versicherten_ID"), QStringLiteral("A000000017")};
  pd.fields[2] = {QStringLiteral("Nachname"), QStringView(Markup).toString()};
  pd.fields[21] = {QStringLiteral("Vorname"), QStringLiteral("Zeile 1\r\n\tZeile 2")};
  pd.xmlText = QStringLiteral("<?xml version=\"1.0\"?>\r\n<a>") + QStringView(Markup) + u"</a>";
  pd.validationText = QStringLiteral("Die lokale Validierung\r\nwar <b>erfolgreich</b>!");
  VsdDocument& vd = egk.documents[VsdKind::Vd];
  vd.fields[9] = {QStringLiteral("WOP"), QStringLiteral("72")};
  vd.xmlText = QStringLiteral("<b/>");
  return egk;
}

EgkInfo InfoOf(const EgkData& egk, bool isMobile = false) {
  TerminalInfo info;
  info.Reset95 = isMobile;
  return EgkInfoOf(info, egk);
}

class EgkWindow {
 public:
  explicit EgkWindow(const EgkInfo& info) : window(info, nullptr) {
    window.show();
    Activate(window);
  }

  QTableWidget& Grid() { return screen.Find<QTableWidget>(QStringLiteral("MSFlexGrid1")); }
  QPlainTextEdit& Xml() { return screen.Find<QPlainTextEdit>(QStringLiteral("Text1")); }
  QString Label(int number) { return screen.Text(u"Label" + QString::number(number)); }
  void Choose(int kind) { screen.Click(QStringLiteral("CmdB_VsdKind_%1").arg(kind)); }
  void Command(int number) { screen.Click(u"Command" + QString::number(number)); }

  QStringList Cells(int column) {
    QStringList texts;
    for (int row = 0; row < Grid().rowCount(); ++row) texts << Grid().item(row, column)->text();
    return texts;
  }

  Form_egK_Info window;
  Screen screen{window};
};

TEST(EgkWindowTest, HasItsCaptions) {
  EgkWindow shown(InfoOf(Card()));
  EXPECT_EQ(shown.window.objectName(), u"Form_egK_Info");
  EXPECT_EQ(shown.screen.Find<QGroupBox>(QStringLiteral("Frame1")).title(),
            u"Informationen zur elektronischen Gesundkeitskarte");
  const std::map<const char16_t*, const char16_t*> captions{
      {u"Command1", u"Elementliste"}, {u"Command2", u"XML-Texte"}, {u"Command3", u"Schließen"},
      {u"Command4", u"ICC Info"},     {u"Command6", u"&Hilfe"},
  };
  for (const auto& [name, caption] : captions) {
    const auto& button = shown.screen.Find<QPushButton>(QStringView(name).toString());
    EXPECT_EQ(button.text(), caption);
    EXPECT_FALSE(button.icon().isNull());
  }
  EXPECT_EQ(shown.screen.Find<QPushButton>(QStringLiteral("Command4")).toolTip(),
            u"Informationen zur Chipkarte. ");
  const std::array<const char16_t*, 3> kinds{u"PD", u"VD", u"GVD"};
  for (int kind = 0; kind < 3; ++kind) {
    EXPECT_EQ(shown.screen.Find<QToolButton>(QStringLiteral("CmdB_VsdKind_%1").arg(kind)).text(),
              kinds.at(static_cast<std::size_t>(kind)));
  }
}

TEST(EgkWindowTest, OpensWithThePersonalData) {
  EgkWindow shown(InfoOf(Card()));
  EXPECT_TRUE(shown.Grid().isVisible());
  EXPECT_EQ(shown.Label(1), u"Persönliche Versichertendaten:\n");
  EXPECT_EQ(shown.Label(8), u"Die lokale Validierung\nwar <b>erfolgreich</b>!");
  EXPECT_EQ(shown.Grid().horizontalHeaderItem(0)->text(), u"Elementnamen");
  EXPECT_EQ(shown.Grid().horizontalHeaderItem(1)->text(), u"Versichertendaten");
  EXPECT_EQ(shown.Cells(0), (QStringList{QStringLiteral("Versicherten_ID"),
                                         QStringLiteral("Nachname"), QStringLiteral("Vorname")}));
  EXPECT_EQ(shown.Cells(1),
            (QStringList{QStringLiteral("A000000017"), QStringView(Markup).toString(),
                         QStringLiteral("Zeile 1\r\n\tZeile 2")}));
}

TEST(EgkWindowTest, ShowsTheListOfTheChosenKind) {
  EgkWindow shown(InfoOf(Card()));
  shown.Choose(1);
  EXPECT_EQ(shown.Label(1), u"Allgemeine Versicherungsdaten:\n");
  EXPECT_EQ(shown.Label(8), u"");
  EXPECT_EQ(shown.Grid().horizontalHeaderItem(1)->text(), u"Versicherungsdaten");
  EXPECT_EQ(shown.Cells(0), QStringList{QStringLiteral("WOP")});
  EXPECT_EQ(shown.Cells(1), QStringList{QStringLiteral("72")});
  shown.Choose(2);
  EXPECT_EQ(shown.Label(1), u"Geschützte Versichertendaten:\n");
  EXPECT_EQ(shown.Grid().horizontalHeaderItem(1)->text(), u"Versichertendaten");
  EXPECT_EQ(shown.Grid().rowCount(), 0);
  shown.Choose(0);
  EXPECT_EQ(shown.Grid().rowCount(), 3);
}

TEST(EgkWindowTest, TheListComesBackWithItsKind) {
  EgkWindow shown(InfoOf(Card()));
  shown.Choose(1);
  shown.Command(2);
  EXPECT_FALSE(shown.Grid().isVisible());
  shown.Command(1);
  EXPECT_TRUE(shown.Grid().isVisible());
  EXPECT_EQ(shown.Label(1), u"Allgemeine Versicherungsdaten:\n");
}

TEST(EgkWindowTest, ShowsTheXmlTextsAsTheyAreKept) {
  EgkWindow shown(InfoOf(Card()));
  shown.Command(2);
  EXPECT_EQ(shown.Label(1), u"Gelesene und dekomprimierte Daten:");
  EXPECT_TRUE(shown.Xml().isVisible());
  EXPECT_TRUE(shown.Xml().isReadOnly());
  EXPECT_EQ(shown.Xml().toPlainText(),
            u"Persönliche Versichertendaten (XML)\n<?xml version=\"1.0\"?>\n<a>" +
                QStringView(Markup).toString() +
                u"</a>\n\nAllgemeine Versicherungsdaten (XML)\n<b/>\n\n"
                u"Geschützte Versichertendaten (XML)\n");
}

TEST(EgkWindowTest, ShowsTheXmlTextsIndentedWhereAsked) {
  EgkData egk;
  egk.documents[VsdKind::Pd].xmlText = QStringLiteral("<a><b>Ä &amp; Ö</b></a>");
  egk.documents[VsdKind::Vd].xmlText = QStringLiteral("kein <XML");
  EgkWindow shown(InfoOf(egk));
  shown.Command(2);
  const QString kept = shown.Xml().toPlainText();
  auto& indents = shown.screen.Find<QCheckBox>(QStringLiteral("Chck_Eingerueckt"));
  EXPECT_EQ(indents.text(), u"&Eingerückt anzeigen");
  EXPECT_FALSE(indents.isChecked());
  EXPECT_TRUE(kept.contains(u"<a><b>Ä &amp; Ö</b></a>"));
  QTest::keyClick(&indents, Qt::Key_Space);
  EXPECT_EQ(shown.Xml().toPlainText(),
            u"Persönliche Versichertendaten (XML)\n<a>\n  <b>Ä &amp; Ö</b>\n</a>\n\n"
            u"Allgemeine Versicherungsdaten (XML)\nkein <XML\n\n"
            u"Geschützte Versichertendaten (XML)\n");
  QTest::keyClick(&indents, Qt::Key_Space);
  EXPECT_EQ(shown.Xml().toPlainText(), kept);
}

TEST(EgkWindowTest, OffersNoIndentationWhereNothingCanBeIndented) {
  EgkData broken;
  broken.documents[VsdKind::Pd].xmlText = QStringLiteral("<a><b></a>");
  for (const EgkData& egk : {EgkData(), broken}) {
    EgkWindow shown(InfoOf(egk));
    shown.Command(2);
    const auto& indents = shown.screen.Find<QCheckBox>(QStringLiteral("Chck_Eingerueckt"));
    EXPECT_FALSE(indents.isEnabled());
    EXPECT_FALSE(indents.isChecked());
  }
}

TEST(EgkWindowTest, TheContextMenuOfTheXmlTextsIsGerman) {
  EgkWindow shown(InfoOf(Card()));
  const std::unique_ptr<QMenu> menu(shown.Xml().createStandardContextMenu());
  QStringList entries;
  for (const QAction* action : menu->actions()) {
    if (!action->isSeparator()) entries << action->text().remove(u'&').section(u'\t', 0, 0);
  }
  EXPECT_EQ(entries, (QStringList{QStringLiteral("Kopieren"), QStringLiteral("Alles auswählen")}));
}

TEST(EgkWindowTest, ShowsTheCardsFacts) {
  const EgkInfo info = InfoOf(Card());
  EgkWindow shown(info);
  shown.Command(4);
  EXPECT_TRUE(shown.screen.Find(QStringLiteral("Frame2")).isVisible());
  EXPECT_EQ(shown.screen.Find<QGroupBox>(QStringLiteral("Frame2")).title(),
            u"Stationäres Kartenterminal:");
  EXPECT_EQ(shown.Label(5), u"Country Code:                276");
  EXPECT_EQ(shown.Label(14),
            u"Reserviert:                                                3333333333");
  for (int number = 2; number < InfoLineCount; ++number) {
    if (number == 8) continue;
    const auto& label = shown.screen.Find<QLabel>(u"Label" + QString::number(number));
    EXPECT_TRUE(label.isVisible()) << number;
    EXPECT_EQ(label.text(), info.lines.at(static_cast<std::size_t>(number)).text);
    EXPECT_EQ(label.toolTip(), info.lines.at(static_cast<std::size_t>(number)).toolTip);
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
    EXPECT_EQ(label.font().families(), FixedPitchFont(label.font()).families()) << number;
  }
}

// Where the character in this column of a line is seen in the window.
double PlaceOf(EgkWindow& shown, int number, qsizetype column) {
  const auto& label = shown.screen.Find<QLabel>(u"Label" + QString::number(number));
  return label.mapTo(&shown.window, label.contentsRect().topLeft()).x() +
         QFontMetricsF(label.font()).horizontalAdvance(label.text().left(column));
}

// The line above the parts of a number is the whole number. Each part begins below its first digit.
TEST(EgkWindowTest, ThePartsStandBelowTheirPlacesInTheWhole) {
  struct Part {
    int label;
    QStringView value;
    int whole;  // the label of the whole number
    qsizetype column;
  };
  const Part parts[] = {
      {4, u"80", 3, 27},           {5, u"276", 3, 29},
      {6, u"00123", 3, 32},        {7, u"4567890123", 3, 37},
      {11, u"30", 10, 19},         {12, u"1111111111111111111111111111", 10, 21},
      {13, u"2222222222", 10, 49}, {14, u"3333333333", 10, 59},
  };
  EgkWindow shown(InfoOf(Card()));
  shown.Command(4);
  QCoreApplication::processEvents();
  if (!IsFixedPitch(shown.screen.Find(QStringLiteral("Label3")).font())) {
    GTEST_SKIP() << "No font of this machine is fixed-pitch.";
  }
  for (const auto& [label, value, whole, column] : parts) {
    EXPECT_EQ(shown.Label(label).indexOf(value), column) << label;
    EXPECT_EQ(shown.Label(whole).mid(column, value.size()), value) << label;
    EXPECT_DOUBLE_EQ(PlaceOf(shown, label, column), PlaceOf(shown, whole, column)) << label;
  }
}

// The frame of the facts has a caption of its own.
TEST(EgkWindowTest, TheHeadingIsThatOfListsAndTexts) {
  EgkWindow shown(InfoOf(Card()));
  const QWidget& heading = shown.screen.Find(QStringLiteral("Label1"));
  EXPECT_TRUE(heading.isVisible());
  shown.Command(4);
  EXPECT_FALSE(heading.isVisible());
  shown.Command(2);
  EXPECT_TRUE(heading.isVisible());
  shown.Command(4);
  shown.Command(1);
  EXPECT_TRUE(heading.isVisible());
}

TEST(EgkWindowTest, ShowsTheFactsOfAStoredRecord) {
  EgkData egk;
  egk.stored.storedDate = QStringLiteral("05032024");
  egk.stored.convertedDate = QStringLiteral("05.03.2024");
  egk.stored.approvalNumber = QStringView(Markup).toString();
  const EgkInfo info = InfoOf(egk, true);
  EgkWindow shown(info);
  const auto& command = shown.screen.Find<QPushButton>(QStringLiteral("Command4"));
  EXPECT_EQ(command.text(), u"VSD Info");
  EXPECT_EQ(command.toolTip(), u"Informationen zum gespeicherten VSD-Status. ");
  shown.Command(4);
  EXPECT_EQ(shown.screen.Find<QGroupBox>(QStringLiteral("Frame2")).title(),
            u"Mobiles Kartenterminal:");
  for (int number = 2; number < InfoLineCount; ++number) {
    if (number == 8) continue;
    const auto& label = shown.screen.Find<QLabel>(u"Label" + QString::number(number));
    EXPECT_EQ(label.text(), info.lines.at(static_cast<std::size_t>(number)).text);
    EXPECT_EQ(label.toolTip(), info.lines.at(static_cast<std::size_t>(number)).toolTip);
  }
  EXPECT_EQ(shown.Label(10), u"Einlesedatum:     05.03.2024");
  EXPECT_EQ(shown.Label(12), u"Zulassungsnummer: " + QStringView(Markup).toString());
  EXPECT_EQ(shown.screen.Find(QStringLiteral("Label10")).toolTip(), u"Einlesedatum: TTMMJJJJ");
}

TEST(EgkWindowTest, ASlotWithoutEgkDataFailsNowhere) {
  for (const bool isMobile : {false, true}) {
    EgkWindow shown(InfoOf({}, isMobile));
    for (int kind = 0; kind < 3; ++kind) {
      shown.Choose(kind);
      EXPECT_EQ(shown.Grid().rowCount(), 0);
      EXPECT_EQ(shown.Label(8), u"");
    }
    shown.Command(2);
    EXPECT_EQ(shown.Xml().toPlainText(),
              u"Persönliche Versichertendaten (XML)\n\n\nAllgemeine Versicherungsdaten (XML)\n\n\n"
              u"Geschützte Versichertendaten (XML)\n");
    shown.Command(4);
    EXPECT_EQ(shown.Label(3), isMobile ? u"VSDStatus: 0x" : u"ICC Serial Number:       0x");
  }
}

TEST(EgkWindowTest, TheInfoLinesAreWhole) {
  EgkWindow shown(InfoOf(Card()));
  shown.Command(4);
  QCoreApplication::processEvents();
  const auto& area = *shown.window.findChild<QScrollArea*>();
  for (const int number : {2, 3, 9, 10, 14}) {
    const auto& label = shown.screen.Find<QLabel>(u"Label" + QString::number(number));
    EXPECT_GE(label.width(), label.fontMetrics().horizontalAdvance(label.text())) << number;
    const int right = label.mapTo(area.widget(), QPoint(0, 0)).x() +
                      label.fontMetrics().horizontalAdvance(label.text());
    EXPECT_LE(right, area.viewport()->width() + area.horizontalScrollBar()->maximum()) << number;
  }
}

TEST(EgkWindowTest, EveryViewOpensWithoutAHorizontalScrollBar) {
  EgkData stored;
  stored.stored.statusText = Card().statusText;
  stored.stored.approvalNumber = QStringLiteral("DENRV;DEMOTERM;001.002.003:004.005.006");
  stored.stored.approval.tlv = QStringLiteral("921B") + QString(54, u'4');
  for (const auto& [egk, isMobile] : {std::pair(Card(), false), std::pair(stored, true)}) {
    EgkWindow shown(InfoOf(egk, isMobile));
    for (const int command : {4, 1}) {
      shown.Command(command);
      QCoreApplication::processEvents();
      for (const auto* area : shown.window.findChildren<QAbstractScrollArea*>()) {
        if (!area->isVisible()) continue;
        EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0) << isMobile << command;
      }
    }
  }
}

// 4000 and 3770 twips are 266 and 251 pixels at 96 dpi.
TEST(EgkGridTest, ColumnsHaveTheirWidthsAndGrowWithTexts) {
  EgkData egk;
  EXPECT_EQ(EgkWindow(InfoOf(egk)).Grid().columnWidth(0), 266);
  EXPECT_GE(EgkWindow(InfoOf(egk)).Grid().columnWidth(1), 251);
  const QString name = QStringLiteral("PROZENTSATZ_WAHLLEISTUNG_AERZTLICHE_BEHANDLUNG");
  egk.documents[VsdKind::Pd].fields[0] = {name, QStringLiteral("100")};
  EgkWindow shown(InfoOf(egk));
  EXPECT_GE(shown.Grid().columnWidth(0), shown.Grid().fontMetrics().horizontalAdvance(name));
}

TEST(EgkGridTest, GrowsWithTheWindow) {
  EgkWindow shown(InfoOf(Card()));
  // Small enough to grow on any screen.
  shown.window.resize(shown.window.size() - QSize(0, 100));
  QCoreApplication::processEvents();
  const QSize before = shown.Grid().size();
  const int valueBefore = shown.Grid().columnWidth(1);
  shown.window.resize(shown.window.size() + QSize(200, 100));
  QCoreApplication::processEvents();
  EXPECT_EQ(shown.Grid().size(), before + QSize(200, 100));
  EXPECT_EQ(shown.Grid().columnWidth(1), valueBefore + 200);
}

TEST(EgkGridTest, WhatIsMarkedCanBeCopied) {
  EgkWindow shown(InfoOf(Card()));
  QTableWidget& grid = shown.Grid();
  QClipboard* clipboard = QApplication::clipboard();
  grid.setFocus();

  grid.selectRow(0);
  QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard->text(), u"Versicherten_ID\tA000000017");

  grid.clearSelection();
  grid.item(1, 1)->setSelected(true);
  QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard->text(), QStringView(Markup).toString());
  EXPECT_FALSE(clipboard->mimeData()->hasHtml());

  QTest::keyClick(&grid, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard->text(), u"Versicherten_ID\tA000000017\r\nNachname\t" +
                                   QStringView(Markup).toString() +
                                   u"\r\nVorname\tZeile 1   Zeile 2");
}

TEST(EgkGridTest, NothingMarkedLeavesTheClipboard) {
  EgkWindow shown(InfoOf(Card()));
  QApplication::clipboard()->setText(QStringLiteral("vorher"));
  shown.Grid().clearSelection();
  shown.Grid().setFocus();
  QTest::keyClick(&shown.Grid(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), u"vorher");
}

TEST(EgkGridTest, ItsContextMenuIsGerman) {
  EgkWindow shown(InfoOf(Card()));
  QStringList entries;
  for (const QAction* action : shown.Grid().actions()) entries << action->text();
  EXPECT_EQ(entries,
            (QStringList{QStringLiteral("&Kopieren"), QStringLiteral("&Alles auswählen")}));
  EXPECT_EQ(shown.Grid().contextMenuPolicy(), Qt::ActionsContextMenu);
}

TEST(EgkGridTest, CannotBeChanged) {
  EgkWindow shown(InfoOf(Card()));
  for (int row = 0; row < shown.Grid().rowCount(); ++row) {
    EXPECT_FALSE(shown.Grid().item(row, 1)->flags() & Qt::ItemIsEditable);
  }
}

TEST(EgkWindowTest, HelpIsOneBox) {
  EgkWindow shown(InfoOf(Card()));
  BoxAnswerer user({PressButton(QMessageBox::Ok)});
  shown.Command(6);
  const SeenBox& box = user.seen.at(0);
  EXPECT_EQ(box.title, u" KartoCheck ");
  EXPECT_EQ(box.icon, QMessageBox::Information);
  EXPECT_EQ(box.text, ValidationHelp().remove(u'\r'));
  EXPECT_EQ(box.buttons, QStringList{QStringLiteral("OK")});
}

TEST(EgkWindowTest, ClosesWithButtonEscapeAndCloseBox) {
  const std::function<void(EgkWindow&)> ways[] = {
      [](EgkWindow& shown) { shown.Command(3); },
      [](EgkWindow& shown) { QTest::keyClick(&shown.window, Qt::Key_Escape); },
      [](EgkWindow& shown) { shown.screen.Press(QStringLiteral("MSFlexGrid1"), Qt::Key_Escape); },
      [](EgkWindow& shown) {
        shown.Command(2);
        shown.screen.Press(QStringLiteral("Text1"), Qt::Key_Escape);
      },
      [](EgkWindow& shown) { shown.window.close(); },
  };
  for (const auto& close : ways) {
    EgkWindow shown(InfoOf(Card()));
    close(shown);
    EXPECT_FALSE(shown.window.isVisible());
  }
}

TEST(EgkWindowTest, TheTabKeyLeavesGridAndText) {
  EgkWindow shown(InfoOf(Card()));
  shown.Grid().setFocus();
  QTest::keyClick(&shown.Grid(), Qt::Key_Tab);
  EXPECT_NE(QApplication::focusWidget(), &shown.Grid());
  shown.Command(2);
  shown.Xml().setFocus();
  QTest::keyClick(&shown.Xml(), Qt::Key_Tab);
  EXPECT_NE(QApplication::focusWidget(), &shown.Xml());
}

TEST(EgkWindowTest, EveryControlHasAnAccessibleName) {
  EgkWindow shown(InfoOf(Card()));
  for (const auto* name : {u"MSFlexGrid1", u"Text1", u"CmdB_VsdKind_0", u"CmdB_VsdKind_2"}) {
    QWidget& control = shown.screen.Find(QStringView(name).toString());
    const auto* accessible = QAccessible::queryAccessibleInterface(&control);
    EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty());
  }
}

TEST(EgkWindowTest, OneViewAndOneDocumentAreChosen) {
  EgkWindow shown(InfoOf(Card()));
  const auto isChosen = [&](const char16_t* name) {
    QWidget& button = shown.screen.Find(QStringView(name).toString());
    const auto* accessible = QAccessible::queryAccessibleInterface(&button);
    EXPECT_EQ(accessible->role(), QAccessible::RadioButton);
    return accessible->state().checked != 0;
  };
  shown.screen.Click(QStringLiteral("CmdB_VsdKind_1"));
  shown.Command(2);
  EXPECT_FALSE(isChosen(u"CmdB_VsdKind_0"));
  EXPECT_TRUE(isChosen(u"CmdB_VsdKind_1"));
  EXPECT_FALSE(isChosen(u"CmdB_VsdKind_2"));
  EXPECT_FALSE(isChosen(u"Command1"));
  EXPECT_TRUE(isChosen(u"Command2"));
  EXPECT_FALSE(isChosen(u"Command4"));
}

TEST(EgkWindowTest, AnEmptyListIsNoTabStop) {
  EgkWindow shown(InfoOf(Card()));
  EXPECT_NE(shown.Grid().focusPolicy() & Qt::TabFocus, 0);
  EgkWindow empty({});
  EXPECT_EQ(empty.Grid().rowCount(), 0);
  EXPECT_EQ(empty.Grid().focusPolicy(), Qt::NoFocus);
}

}  // namespace
}  // namespace kartocheck::test
