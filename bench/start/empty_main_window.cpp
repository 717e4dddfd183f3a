#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>

// A main window with nothing in it but what every main window has: a menu, a line of text and a
// status bar.
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QMainWindow window;
  window.setObjectName(QStringLiteral("empty_main"));
  window.menuBar()->addMenu(QStringLiteral("&Datei"))->addAction(QStringLiteral("&Beenden"));
  window.statusBar()->showMessage(QStringLiteral("Bereit"));
  window.resize(874, 604);
  window.show();
  return QApplication::exec();
}
