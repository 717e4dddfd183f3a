#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSettings>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>
#include <QToolButton>

#include <gtest/gtest.h>
#include <map>
#include <set>

#include "gui/support/program.h"
#include "support/printing.h"
#include "ui/main_window/data_frame.h"

namespace kartocheck::test {
namespace {

QString Member(const char16_t* array, int index) {
  return QStringView(array).toString() + u'_' + QString::number(index);
}

class LayoutTest : public testing::Test {
 protected:
  QAction& Entry(const char16_t* name) {
    auto* entry = program.window.findChild<QAction*>(QStringView(name).toString());
    if (entry == nullptr) throw std::invalid_argument("no such menu entry");
    return *entry;
  }

  std::vector<int> VisibleFrames() {
    std::vector<int> visible;
    for (int frame = 0; frame < 4; ++frame) {
      if (program.Find(Member(u"Fram_Show", frame)).isVisible()) visible.push_back(frame);
    }
    return visible;
  }

  Program program;
};

TEST_F(LayoutTest, TitleAndNameAreTheProgramsOwn) {
  EXPECT_EQ(program.window.windowTitle(), u"KartoCheck");
  EXPECT_EQ(program.window.objectName(), u"Form_MKT_Test");
  EXPECT_FALSE(program.window.windowIcon().isNull());
}

TEST_F(LayoutTest, ButtonsCarryPictureAndToolTip) {
  const std::array<const char16_t*, 6> tooltips{
      u"Programm prüft die serielle(n) Schnittstelle(n) auf Vorhandensein eines MKT's",
      u"Überprüft die ausgewählte Schnittstelle im Dialog",
      u"Der MKT Status wird angezeigt",
      u"Die Krankenversichertendaten werden angezeigt/gelesen",
      u"Die Krankenversichertendaten werden in die Zwischenablage kopiert",
      u"Die Anzeigefelder werden zurückgesetzt",
  };
  const auto& panel = program.Find(QStringLiteral("Pict_MKT_Test"));
  std::set<qint64> pictures;
  for (int index = 0; index < 6; ++index) {
    auto& button = program.Find<QToolButton>(Member(u"CmdB_MKt_Test", index));
    EXPECT_EQ(button.toolTip(), tooltips.at(static_cast<std::size_t>(index)));
    const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&button);
    EXPECT_EQ(accessible->text(QAccessible::Name), button.text().remove(u'&'));
    EXPECT_EQ(accessible->text(QAccessible::Description), button.toolTip());
    EXPECT_EQ(button.parentWidget(), &panel);
    EXPECT_FALSE(button.icon().pixmap(40).isNull());
    pictures.insert(button.icon().cacheKey());
  }
  EXPECT_EQ(pictures.size(), 6U);
}

TEST_F(LayoutTest, EveryButtonIsEnabledAtStart) {
  for (int index = 0; index < 6; ++index) {
    EXPECT_TRUE(program.Find(Member(u"CmdB_MKt_Test", index)).isEnabled()) << index;
  }
  const auto& egk = program.Find<QPushButton>(QStringLiteral("cmdeGK"));
  EXPECT_TRUE(egk.isEnabled());
  EXPECT_EQ(egk.text(), u"Info eGK Daten");
  EXPECT_EQ(egk.toolTip(), u"Anzeige weiterer Daten der elektronischen Gesundheitskarte.");
}

TEST_F(LayoutTest, PortFrameOffersEveryPortAtStart) {
  const std::array<const char16_t*, 5> texts{u"COM 1 ", u"COM 2", u"COM 3", u"COM 4",
                                             u"weitere ..."};
  EXPECT_EQ(program.Find<QGroupBox>(QStringLiteral("Fram_Comx")).title(), u"Schnittstellen");
  for (int member = 0; member < 5; ++member) {
    const auto& option = program.Find<QRadioButton>(Member(u"Opti_Comx", member));
    const auto& label = program.Find<QLabel>(Member(u"Labe_Comx", member));
    EXPECT_EQ(label.text(), texts.at(static_cast<std::size_t>(member)));
    EXPECT_EQ(option.isChecked(), member == 0);
    EXPECT_TRUE(option.isEnabled());
    EXPECT_TRUE(label.isEnabled());
  }
  EXPECT_EQ(program.Find<QListWidget>(QStringLiteral("List1")).count(), 0);
  EXPECT_TRUE(program.Find(QStringLiteral("List1")).isEnabled());
}

TEST_F(LayoutTest, EnablePortSwitchesOptionAndLabel) {
  for (int slot = 1; slot <= 5; ++slot) {
    for (const bool enabled : {false, true}) {
      program.view.isPortEnabled[slot].Set(enabled);
      EXPECT_EQ(program.Find(Member(u"Opti_Comx", slot - 1)).isEnabled(), enabled) << slot;
      EXPECT_EQ(program.Find(Member(u"Labe_Comx", slot - 1)).isEnabled(), enabled) << slot;
    }
  }
}

TEST_F(LayoutTest, ClickOnThePortsTextChoosesThePort) {
  program.Click(QStringLiteral("Labe_Comx_2"));
  EXPECT_TRUE(program.Find<QRadioButton>(QStringLiteral("Opti_Comx_2")).isChecked());
  EXPECT_EQ(program.module.SelectedPort, Port(3));
  EXPECT_EQ(program.Text(QStringLiteral("Labl_StatusText")),
            u"Die serielle Schnittstelle COM 3 wurde ausgewählt");
}

TEST_F(LayoutTest, ClickOnTheTextOfADisabledPortChoosesNothing) {
  program.view.isPortEnabled[5].Set(false);
  program.Click(QStringLiteral("Labe_Comx_4"));
  EXPECT_TRUE(program.Find<QRadioButton>(QStringLiteral("Opti_Comx_0")).isChecked());
  EXPECT_EQ(program.module.SelectedPort, Port(1));
}

TEST_F(LayoutTest, DataFrameIsEmptyAtStart) {
  const DataFrame empty = EmptyDataFrame();
  EXPECT_EQ(program.Find<QGroupBox>(QStringLiteral("Fram_Show_3")).title(),
            u"Krankenversicherten Kartendaten");
  for (int row = 0; row < DataRowCount; ++row) {
    EXPECT_EQ(program.Text(Member(u"Labl_Name", row)),
              empty.labels.at(static_cast<std::size_t>(row)));
    EXPECT_EQ(program.Text(Member(u"Labl_Wert", row)), u"");
  }
}

TEST_F(LayoutTest, StatusTabsNameTheirRows) {
  const std::array<const char16_t*, 8> labels{
      u"Serielle Schnittstelle:", u"Baudrate:",      u"PKT Modell:",    u"Hersteller:", u"CT-Typ:",
      u"Software Version:",       u"Ausgabemedium:", u"PnP Device ID:",
  };
  const std::array<const char16_t*, 5> titles{u"COM 1", u"COM 2", u"COM 3", u"COM 4",
                                              u"weitere ..."};
  const auto& tabs = program.Find<QTabWidget>(QStringLiteral("TabStrip1"));
  ASSERT_EQ(tabs.count(), 5);
  for (int tab = 0; tab < 5; ++tab) {
    EXPECT_EQ(tabs.tabText(tab), titles.at(static_cast<std::size_t>(tab)));
    const auto& frame = program.Find<QGroupBox>(Member(u"Fram_Tab1", tab));
    EXPECT_EQ(frame.title(), u"Status");
    EXPECT_TRUE(tabs.widget(tab)->isAncestorOf(&frame));
    for (int row = 0; row < 8; ++row) {
      const QString name = Member(u"Labe_Status", tab) + u'_' + QString::number(row);
      const bool furtherPort = tab == 4 && row == 0;
      EXPECT_EQ(program.Text(name),
                furtherPort ? u"Schnittstelle:" : labels.at(static_cast<std::size_t>(row)));
      const QString value = Member(u"Labl_Status", tab) + u'_' + QString::number(row);
      EXPECT_TRUE(frame.isAncestorOf(&program.Find(value)));
    }
  }
}

// The system knows the devices before the first scan.
TEST_F(LayoutTest, StatusTabsNameTheDevicesFromTheStartOn) {
  program.directory.identifications = {{1, QStringLiteral("USB A")}, {4, QStringLiteral("USB B")}};
  const TestFlow started(program.module, program.window.Boxes(), program.window, program.view,
                         program.window);
  for (int tab = 0; tab < 5; ++tab) {
    const char16_t* device = tab == 0 ? u"USB A" : tab == 3 ? u"USB B" : u"";
    EXPECT_EQ(program.Text(QStringLiteral("Labl_Status_%1_7").arg(tab)), device) << tab;
  }
}

TEST_F(LayoutTest, WaitFrameTellsWhatIsDone) {
  EXPECT_EQ(program.Text(QStringLiteral("Labe_Warten_0")), u"Bitte warten !");
  EXPECT_EQ(program.Text(QStringLiteral("Labe_Warten_1")),
            u"Programm prüft die serielle(n) Schnittstelle(n)");
  EXPECT_EQ(program.Text(QStringLiteral("Labe_Warten_2")), u"auf Vorhandensein eines");
  EXPECT_EQ(program.Text(QStringLiteral("Labe_Warten_3")),
            u"multifunktionalen Karten-Terminals (MKT).");
  EXPECT_EQ(program.Text(QStringLiteral("Labe_Dialog")),
            u"Überprüft die ausgewählte Schnittstelle im Dialog");
}

TEST_F(LayoutTest, OneFrameIsVisibleAtATime) {
  EXPECT_EQ(VisibleFrames(), std::vector<int>{3});
  for (const int frame : {0, 1, 2, 3, 1, 0}) {
    EXPECT_TRUE(program.window.ShowFrameX(frame));
    EXPECT_EQ(VisibleFrames(), std::vector<int>{frame});
  }
}

TEST_F(LayoutTest, ShowingTheVisibleFrameChangesNothing) {
  EXPECT_FALSE(program.window.ShowFrameX(3));
  EXPECT_EQ(VisibleFrames(), std::vector<int>{3});
}

TEST_F(LayoutTest, AFrameIsShownWhereNoneWasVisible) {
  program.Find(QStringLiteral("Fram_Show_3")).hide();
  EXPECT_TRUE(program.window.ShowFrameX(2));
  EXPECT_EQ(VisibleFrames(), std::vector<int>{2});
}

TEST_F(LayoutTest, ThereIsNoFrameOutsideOfZeroToThree) {
  for (const int frame : {-1, 4, 32'767}) {
    EXPECT_FALSE(program.window.ShowFrameX(frame));
    EXPECT_EQ(VisibleFrames(), std::vector<int>{3});
  }
}

TEST_F(LayoutTest, MenusHaveTheirEntries) {
  const std::map<const char16_t*, const char16_t*> texts{
      {u"mnuValidierung", u"&Validierung"},
      {u"mnuSchema_0", u"UC_allgemeineVersicherungsdatenXSD"},
      {u"mnuSchema_1", u"UC_PersoenlicheVersichertendatenXSD"},
      {u"mnuSchema_2", u"UC_geschuetzteVersichertendatenXSD"},
      {u"mnuBeenden", u"&Beenden"},
      {u"mnuBenutzerInformation", u"Ben&utzer Information"},
      {u"mnuInfo", u"Inf&o..."},
      {u"mnuPruefbericht", u"Prüfbericht &kopieren"},
      {u"mnuPruefberichtSpeichern", u"Prüfbericht &speichern ..."},
  };
  for (const auto& [name, text] : texts) EXPECT_EQ(Entry(name).text(), text);
  EXPECT_EQ(program.Find<QMenu>(QStringLiteral("mnuDatei")).title(), u"&Datei");
  EXPECT_EQ(program.Find<QMenu>(QStringLiteral("mnuHilfe")).title(), u"&Hilfe");
  EXPECT_EQ(program.Find<QMenu>(QStringLiteral("mnuSchema")).title(), u"&Neues Schema laden");
  EXPECT_TRUE(Entry(u"mnuValidierung").isCheckable());
  EXPECT_FALSE(Entry(u"mnuValidierung").isChecked());
}

TEST_F(LayoutTest, EveryMenuEntryIsEnabledAtStart) {
  for (const auto* name : {u"mnuValidierung", u"mnuSchema_0", u"mnuSchema_1", u"mnuSchema_2",
                           u"mnuBenutzerInformation", u"mnuInfo", u"mnuBeenden"}) {
    EXPECT_TRUE(Entry(name).isEnabled()) << QStringView(name).toString().toStdString();
  }
  EXPECT_TRUE(program.Find(QStringLiteral("mnuSchema")).isEnabled());
}

TEST_F(LayoutTest, AReportIsOfferedOnceThereIsOne) {
  EXPECT_FALSE(Entry(u"mnuPruefbericht").isEnabled());
  EXPECT_FALSE(Entry(u"mnuPruefberichtSpeichern").isEnabled());
  program.window.OfferReport([] { return TestReport(); });
  EXPECT_TRUE(Entry(u"mnuPruefbericht").isEnabled());
  EXPECT_TRUE(Entry(u"mnuPruefberichtSpeichern").isEnabled());
}

TEST_F(LayoutTest, StatusBarHoldsTextAndProgress) {
  const auto& bar = program.Find<QStatusBar>(QStringLiteral("StatusBar1"));
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Status")), u"Status:");
  EXPECT_TRUE(bar.isAncestorOf(&program.Find(QStringLiteral("Labl_StatusText"))));
  const auto& progress = program.Find<QProgressBar>(QStringLiteral("ProgressBar1"));
  const std::pair<int, int> rows[] = {{0, 0}, {50, 50}, {100, 100}, {120, 100}, {-1, 0}};
  for (const auto& [percent, shown] : rows) {
    program.view.progress.Set(percent);
    EXPECT_EQ(progress.value(), shown);
  }
}

TEST_F(LayoutTest, ProgressSaysNothingWhereNothingRuns) {
  const auto& progress = program.Find<QProgressBar>(QStringLiteral("ProgressBar1"));
  const QSize before = progress.size();
  EXPECT_FALSE(progress.isTextVisible());
  program.view.progress.Set(20);
  EXPECT_TRUE(progress.isTextVisible());
  QApplication::processEvents();
  EXPECT_EQ(progress.size(), before) << "nothing moves";
  program.view.progress.Set(0);
  EXPECT_FALSE(progress.isTextVisible());
}

TEST_F(LayoutTest, StatusTextKeepsItsBlanks) {
  const QString text =
      QStringLiteral("An COM         Chipkartenleser möglich. Mit               Taste fortfahren.");
  program.window.ShowStatusText(text);
  EXPECT_EQ(program.Text(QStringLiteral("Labl_StatusText")), text);
}

// The name of a schema file stands in the status text, that of a device in a hint.
TEST_F(LayoutTest, ToolTipsGuessNoMarkup) {
  const QString text = QStringLiteral("Das Schema <b>x</b> & y.xsd wurde geladen");
  program.window.ShowStatusText(text);
  program.view.portHints[5].Set(text);
  for (const auto* name : {u"Labl_StatusText", u"Opti_Comx_4", u"Labe_Comx_4", u"List1"}) {
    QTextDocument shown;
    const QString toolTip = program.Find(QStringView(name).toString()).toolTip();
    ASSERT_TRUE(Qt::mightBeRichText(toolTip));
    shown.setHtml(toolTip);
    EXPECT_EQ(shown.toPlainText(), text);
  }
  program.window.ShowStatusText(QStringLiteral("a & b"));
  EXPECT_EQ(program.Find(QStringLiteral("Labl_StatusText")).toolTip(), u"a & b");
}

TEST_F(LayoutTest, ALongStatusTextDoesNotWidenTheWindow) {
  const QSize before = program.window.size();
  const int least = program.window.minimumSizeHint().width();
  program.window.ShowStatusText(QString(500, u'W'));
  QApplication::processEvents();
  EXPECT_EQ(program.window.size(), before);
  EXPECT_EQ(program.window.minimumSizeHint().width(), least);
}

TEST_F(LayoutTest, EveryControlHasAnAccessibleName) {
  int checked = 0;
  for (QWidget* widget : program.window.findChildren<QWidget*>()) {
    const bool lamp = widget->objectName().startsWith(u"Shap_Lampe");
    if ((widget->focusPolicy() & Qt::TabFocus) == 0 && !lamp) continue;
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(accessible, nullptr);
    EXPECT_FALSE(accessible->text(QAccessible::Name).trimmed().isEmpty())
        << widget->metaObject()->className() << " " << widget->objectName().toStdString();
    ++checked;
  }
  // Buttons, options, list, eGK button, tab strip, status text aside: 18 + 40 value fields, lamps.
  EXPECT_GE(checked, 6 + 5 + 1 + 1 + 1 + 58 + 2);
}

// Every text that is not wrapped has the room it asks for.
void ExpectNothingCut(QWidget& window) {
  int checked = 0;
  for (const auto* label : window.findChildren<QLabel*>()) {
    if (!label->isVisible() || label->wordWrap()) continue;
    EXPECT_GE(label->width(), label->sizeHint().width()) << label->text().toStdString();
    EXPECT_GE(label->height(), label->minimumSizeHint().height()) << label->text().toStdString();
    ++checked;
  }
  for (const auto* button : window.findChildren<QAbstractButton*>()) {
    const bool own = button->isVisible() && !button->objectName().startsWith(u"Scroll");
    if (!own || button->objectName().isEmpty()) continue;
    EXPECT_GE(button->width(), button->minimumSizeHint().width()) << button->text().toStdString();
    ++checked;
  }
  EXPECT_GE(checked, 18 + 6);
}

TEST_F(LayoutTest, NothingIsCut) {
  ExpectNothingCut(program.window);
}

TEST_F(LayoutTest, NothingIsCutWithALargeFont) {
  const QSize before = program.window.sizeHint();
  QFont font = QApplication::font();
  font.setPointSizeF(font.pointSizeF() * 1.8);
  program.window.setFont(font);
  program.window.resize(program.window.sizeHint());
  ASSERT_TRUE(WaitUntil([&] { return program.window.sizeHint().height() > before.height(); }));
  program.window.resize(program.window.sizeHint());
  QApplication::processEvents();
  ExpectNothingCut(program.window);
}

TEST_F(LayoutTest, DataFieldsGrowWithTheWindow) {
  const int before = program.Find(QStringLiteral("Labl_Wert_0")).width();
  program.window.resize(program.window.size() + QSize(300, 0));
  QApplication::processEvents();
  EXPECT_GE(program.Find(QStringLiteral("Labl_Wert_0")).width(), before + 290);
}

TEST(SimulationMarkTest, StandsInTheStatusBarWhenTerminalsAreSimulated) {
  Program program("", {.simulation = true});
  auto& mark = program.Find<QLabel>(QStringLiteral("Labl_Simulation"));
  EXPECT_EQ(mark.text(), u"Simulation");
  EXPECT_TRUE(program.Find(QStringLiteral("StatusBar1")).isAncestorOf(&mark));
  program.window.ShowStatusText(QStringLiteral("Die Krankenversichertendaten lesen"));
  EXPECT_TRUE(mark.isVisible());
}

TEST(SimulationMarkTest, IsMissingWithRealTerminals) {
  const Program program;
  EXPECT_EQ(program.window.findChild<QLabel*>(QStringLiteral("Labl_Simulation")), nullptr);
}

TEST(WindowSizeTest, IsRememberedFromOneStartToTheNext) {
  const QTemporaryDir folder;
  QSettings settings(folder.filePath(QStringLiteral("kartocheck.ini")), QSettings::IniFormat);
  const Form_MKT_Test::Options options{.settings = &settings};
  QSize left;
  {
    Program program("", options);
    program.window.resize(program.window.size() - QSize(0, 60));
    left = program.window.size();
    program.window.CloseNow();
  }
  const Program program("", options);
  EXPECT_EQ(program.window.size(), left);
}

}  // namespace
}  // namespace kartocheck::test
