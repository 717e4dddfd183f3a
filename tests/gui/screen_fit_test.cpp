#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFontInfo>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "gui/support/layout_checks.h"
#include "gui/support/program.h"
#include "gui/support/scan_results.h"
#include "gui/support/simulated_program.h"
#include "support/printing.h"
#include "ui/form_daten_info.h"
#include "ui/form_egk_info.h"
#include "ui/form_first_user.h"
#include "ui/form_info.h"

// Every window can be used on the screen that there is, in several fonts. The build runs these
// tests once for each of the screens that they are made for.

namespace kartocheck::test {
namespace {

const QString LongValue = QStringLiteral(
    "Lange Angabe mit Umlauten ÄÖÜäöüß & Zeichen <b>wie</b> diesen, die sich über mehr als eine "
    "Zeile zieht");

class ScreenFitTest : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    QFont font = before_;
    font.setFamilies({QString::fromLatin1(GetParam())});
    ASSERT_EQ(QFontInfo(font).family(), font.families().first());
    QApplication::setFont(font);
  }
  void TearDown() override { QApplication::setFont(before_); }

  static EgkInfo StoredInfo() {
    EgkData egk;
    egk.stored.statusText = QString(50, u'3');
    egk.stored.convertedDate = QStringLiteral("05.03.2024");
    egk.stored.approvalNumber = QStringLiteral("DENRV;DEMOTERM;001.002.003:004.005.006");
    egk.stored.approval.tlv = QStringLiteral("921B") + QString(54, u'4');
    TerminalInfo info;
    info.Reset95 = true;
    return EgkInfoOf(info, egk);
  }

 private:
  QFont before_ = QApplication::font();
};

TEST_P(ScreenFitTest, TheMainWindowWithItsFrames) {
  Program program("", {.simulation = true});
  for (const int frame : {3, 0, 1, 2, 3}) {
    SCOPED_TRACE(frame);
    (void)program.window.ShowFrameX(frame);
    ExpectUsable(program.window);
  }
}

TEST_P(ScreenFitTest, TheMainWindowFullOfData) {
  Program program("", {.simulation = true});
  DataFrame frame = EmptyDataFrame();
  frame.title =
      QStringLiteral("eGK VSDaten(Mobil) abgebildet auf die Krankenversicherten Kartendaten");
  frame.values.fill(LongValue);
  program.view.data.Set(frame);
  const ListedPort longest{.line = QStringLiteral("USB Device 256 (CTAPI pn=8447)"),
                           .device = QStringLiteral("Muster Doppelkartenleser [Klasse 3] 01 00")};
  program.view.furtherPorts.Set({.ports = std::vector(30, longest), .chosen = 2});
  program.view.progress.Set(100);
  program.window.ShowStatusText(QStringLiteral(
      "An COM         Chipkartenleser möglich. Mit               Taste fortfahren."));
  ExpectUsable(program.window);
}

TEST_P(ScreenFitTest, TheMainWindowWithHintsAndALateTerminal) {
  Program program("", {.simulation = true});
  program.view.hintsWithoutReader.Set(
      {QStringLiteral("Sie dürfen /dev/ttyS0, /dev/ttyUSB0 nicht öffnen. Lassen Sie sich in die "
                      "Gruppe \"dialout\" aufnehmen und melden Sie sich neu an."),
       QStringLiteral(
           "Der Kartenleser-Dienst läuft nicht. Starten Sie ihn mit \"sudo systemctl start "
           "pcscd\"; fehlt er, installieren Sie die Pakete \"pcscd\" und \"libccid\".")});
  program.window.ShowStatusText(
      QStringLiteral("Ein anderes Programm benutzt die Karte im Kartenleser. Beenden Sie es und "
                     "versuchen Sie es noch einmal."));
  ExpectUsable(program.window);
  for (const int frame : {0, 1, 2}) {
    SCOPED_TRACE(frame);
    (void)program.window.ShowFrameX(frame);
    program.view.isCallLate.Set(true);
    ExpectUsable(program.window);
    program.view.isCallLate.Set(false);
  }
}

// A serial port, a serial port of a high number, and a USB device.
TEST_P(ScreenFitTest, TheStatusTabsOfEveryKindOfPort) {
  Program program("", {.simulation = true});
  StatusTab values;
  values.fill(LongValue);
  (void)program.window.ShowFrameX(2);
  auto& tabs = program.Find<QTabWidget>(QStringLiteral("TabStrip1"));
  for (const auto& [slot, name] :
       {std::pair(1, QStringLiteral("weitere ...")), std::pair(5, QStringLiteral("COM 256")),
        std::pair(5, QStringLiteral("USB Device 256"))}) {
    SCOPED_TRACE(name.toStdString());
    program.view.furtherPortName.Set(name);
    program.view.statusTabs[slot].Set(values);
    program.view.tabInFront.Set(slot);
    ExpectUsable(program.window);
    EXPECT_TRUE(tabs.tabBar()->rect().contains(tabs.tabBar()->tabRect(slot - 1)));
  }
}

TEST_P(ScreenFitTest, TheEgkWindowOfACard) {
  SimulatedProgram program(QStringLiteral("egk-beispiel"));
  program.flow.SetValidation(true);
  LoadSchemas(program.module.Validation, {QStringLiteral(KARTOCHECK_SCHEMAS)});
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  program.Click(QStringLiteral("cmdeGK"));
  QWidget& window = SideWindow(QStringLiteral("Form_egK_Info"));
  Screen screen(window);
  for (int kind = 0; kind < VsdKindCount; ++kind) {
    screen.Click(QStringLiteral("CmdB_VsdKind_%1").arg(kind));
    ExpectUsable(window);
  }
  screen.Click(QStringLiteral("Command2"));
  ExpectUsable(window);
  screen.Find<QCheckBox>(QStringLiteral("Chck_Eingerueckt")).click();
  ExpectUsable(window);
  screen.Click(QStringLiteral("Command4"));
  ExpectUsable(window);
  window.close();
}

TEST_P(ScreenFitTest, TheInfoViewsHaveNoHorizontalScrollBar) {
  TerminalInfo card;
  EgkData egk;
  egk.iccsn = QStringLiteral("80276001230000000017");
  egk.statusText = QString(50, u'3');
  for (const EgkInfo& info : {EgkInfoOf(card, egk), StoredInfo()}) {
    Form_egK_Info window(info, nullptr);
    window.show();
    Screen(window).Click(QStringLiteral("Command4"));
    ExpectUsable(window);
    const auto& frame = Screen(window).Find(QStringLiteral("Frame2"));
    EXPECT_EQ(frame.findChild<QScrollArea*>()->horizontalScrollBar()->maximum(), 0);
  }
}

TEST_P(ScreenFitTest, TheResultWindow) {
  for (const ScanResult& result : {EveryCase(12), ScanResultOf({}, {}, 0)}) {
    Form_DatenInfo window(result, nullptr);
    window.show();
    ExpectUsable(window);
  }
}

TEST_P(ScreenFitTest, TheUserInformation) {
  Form_FirstUser window(nullptr);
  window.show();
  ExpectUsable(window);
}

TEST_P(ScreenFitTest, TheAboutWindow) {
  Form_Info window(
      {.version = QStringLiteral("0.1.0"),
       .library = QStringLiteral("/home/praxis/Programme/kartocheck/lib/kartocheck/libCTNRV32.so"),
       .system = QStringLiteral("Debian GNU/Linux 12 (bookworm)")},
      nullptr);
  window.show();
  ExpectUsable(window);
  QTest::keyClick(&window, Qt::Key_PageDown);
  QTest::keyClick(&window, Qt::Key_PageDown);
  const QScrollBar& bar = *window.findChild<QScrollArea*>()->verticalScrollBar();
  EXPECT_EQ(bar.value(), bar.maximum()) << "the keyboard scrolls to the end";
}

TEST_P(ScreenFitTest, TheMessageBoxes) {
  Program program;
  const QString lines =
      QStringLiteral(" Ist am Vedra Handy F der PC-Mode auf \r\n").repeated(16) + u"Ende";
  const QString wide = QStringLiteral(
      " Achtung, Lesetest an einem Vedra F/Serie Delta/Sigma Gerät! \r\n Nach Durchführen eines "
      "Lesetests an einem Vedra F/Serie Delta/Sigma Gerät \r\n mit dieser Testsoftware wird der "
      "gelesene Datensatz \r\n automatisch gelöscht! ");
  for (const QString& text : {ValidationHelp(), lines, wide, LongValue.repeated(12),
                              QStringLiteral("Überprüfen Sie die Verbindung.")}) {
    const BoxAnswerer user({[](QMessageBox& box) {
      ExpectUsable(box);
      box.button(QMessageBox::Ok)->click();
    }});
    program.window.Boxes().Tell(Icon::Exclamation, Dialogs::Title.toString(), text);
  }
  for (const QString& text : {lines, wide}) {
    const BoxAnswerer user({[](QMessageBox& box) {
      ExpectUsable(box);
      box.button(QMessageBox::No)->click();
    }});
    (void)program.window.Boxes().Ask({.title = Dialogs::Title.toString(),
                                      .text = text,
                                      .icon = Icon::Exclamation,
                                      .buttons = Buttons::YesNo,
                                      .preselected = Answer::No});
  }
}

// What has the keyboard's focus is seen, wherever it lies in a scrolled part.
TEST_P(ScreenFitTest, TheFocusIsAlwaysInView) {
  SimulatedProgram program(QStringLiteral("praxis"));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
    for (int step = 0; step < 40; ++step) {
      QTest::keyClick(program.window.focusWidget(), key);
      QCoreApplication::processEvents();
      const QWidget& focused = *program.window.focusWidget();
      EXPECT_FALSE(focused.visibleRegion().isEmpty()) << focused.objectName().toStdString();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Fonts, ScreenFitTest,
                         testing::Values("DejaVu Sans", "Liberation Sans", "Cantarell"));

}  // namespace
}  // namespace kartocheck::test
