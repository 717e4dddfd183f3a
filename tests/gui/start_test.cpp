#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdlib>
#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "gui/support/screen.h"
#include "main/start_window.h"
#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "simulator/simulated_practice.h"
#include "support/printing.h"
#include "support/system.h"

// The program from its start to its end, with its real event loop.

namespace kartocheck::test {
namespace {

class StartTest : public testing::Test {
 protected:
  StartTest() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    QApplication::setQuitOnLastWindowClosed(true);
  }
  ~StartTest() override { QApplication::setQuitOnLastWindowClosed(false); }

  // Does the steps in order, each as soon as a window of its name is in front, and runs the
  // program.
  int Run(std::vector<std::pair<QString, std::function<void(QWidget&)>>> steps) {
    steps_ = std::move(steps);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [this] { TakeStep(); });
    timer.start(2);
    const int status = RunWindow({.api = api,
                                  .serial = serial,
                                  .directory = directory,
                                  .pending = pending,
                                  .terminate = [](const auto&) { std::abort(); },
                                  .schemaDirectories = {folder.path()},
                                  .library = [] { return QStringLiteral("Simulation"); },
                                  .simulation = true});
    EXPECT_TRUE(steps_.empty()) << "window did not come: " << steps_.front().first.toStdString();
    return status;
  }

  QTemporaryDir folder;
  ctapi::SimulatedPractice practice;
  CtApiSimulated api{practice};
  PendingCall pending;
  SerialPortSimulated serial{practice};
  PortDirectorySimulated directory{practice};
  QStringList seen;

 private:
  void TakeStep() {
    for (const QWidget* window : QApplication::topLevelWidgets()) {
      const bool isNew = window->isVisible() && !window->objectName().isEmpty() &&
                         !seen.contains(window->objectName());
      if (isNew) seen << window->objectName();
    }
    QWidget* front = FrontWindow();
    if (steps_.empty() || front == nullptr || front->objectName() != steps_.front().first) return;
    const auto step = steps_.front().second;
    steps_.erase(steps_.begin());
    step(*front);
  }

  std::vector<std::pair<QString, std::function<void(QWidget&)>>> steps_;
};

const QString FirstUser = QStringLiteral("Form_FirstUser");
const QString MainWindow = QStringLiteral("Form_MKT_Test");

void Close(QWidget& window) {
  BoxAnswerer user({PressButton(QMessageBox::Yes)});
  window.close();
}

TEST_F(StartTest, QuitEndsTheProgramBeforeTheMainWindow) {
  EXPECT_EQ(Run({{FirstUser,
                  [](QWidget& window) { Screen(window).Click(QStringLiteral("Command1_0")); }}}),
            EXIT_SUCCESS);
  EXPECT_EQ(seen, QStringList{FirstUser});
}

TEST_F(StartTest, ContinueEscapeAndCloseBoxLeadToTheMainWindow) {
  const std::function<void(QWidget&)> ways[] = {
      [](QWidget& window) { Screen(window).Click(QStringLiteral("Command1_1")); },
      [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); },
      [](QWidget& window) { window.close(); },
  };
  for (const auto& way : ways) {
    seen.clear();
    EXPECT_EQ(Run({{FirstUser, way}, {MainWindow, Close}}), EXIT_SUCCESS);
    EXPECT_EQ(seen, (QStringList{FirstUser, MainWindow}));
  }
}

TEST_F(StartTest, TheSystemEndsTheProgramInTheUserInformation) {
  EXPECT_EQ(Run({{FirstUser, [](QWidget& /*window*/) { AskToEnd(); }}}), EXIT_SUCCESS);
  EXPECT_EQ(seen, QStringList{FirstUser});
}

TEST_F(StartTest, TheSystemEndsTheProgramInTheMainWindow) {
  EXPECT_EQ(Run({{FirstUser, [](QWidget& window) { window.close(); }},
                 {MainWindow, [](QWidget& /*window*/) { AskToEnd(); }}}),
            EXIT_SUCCESS);
}

TEST_F(StartTest, SchemasAreLoadedAndTheReportTellsThem) {
  QFile schema(folder.filePath(QStringLiteral("UC_PersoenlicheVersichertendatenXML.xsd")));
  ASSERT_TRUE(schema.open(QIODevice::WriteOnly));
  schema.write("<x/>");
  schema.close();
  QString report;
  Run({{FirstUser, [](QWidget& window) { window.close(); }},
       {MainWindow, [&](QWidget& window) {
          window.findChild<QAction*>(QStringLiteral("mnuPruefbericht"))->trigger();
          report = QApplication::clipboard()->text();
          Close(window);
        }}});
  EXPECT_TRUE(report.startsWith(u"Prüfbericht KartoCheck\r\n"));
  EXPECT_TRUE(report.contains(u"  CT-API-Bibliothek:      Simulation\r\n"));
  EXPECT_TRUE(report.contains(u"  PD:                     Schema geladen\r\n"));
  EXPECT_TRUE(report.contains(u"  VD:                     kein Schema\r\n"));
}

TEST_F(StartTest, TheInfoWindowTellsVersionAndLibrary) {
  QCoreApplication::setApplicationVersion(QStringLiteral("9.8.7"));
  QString version;
  QString library;
  Run({{FirstUser, [](QWidget& window) { window.close(); }},
       {MainWindow,
        [](QWidget& window) { window.findChild<QAction*>(QStringLiteral("mnuInfo"))->trigger(); }},
       {QStringLiteral("Form_Info"),
        [&](QWidget& window) {
          version = Screen(window).Text(QStringLiteral("Labl_Version"));
          library = Screen(window).Text(QStringLiteral("Labl_Bibliothek"));
          window.close();
        }},
       {MainWindow, Close}});
  EXPECT_EQ(version, u"9.8.7");
  EXPECT_EQ(library, u"Simulation");
}

}  // namespace
}  // namespace kartocheck::test
