#include <QApplication>
#include <QWidget>

// A window with nothing in it.
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.setObjectName(QStringLiteral("empty"));
  window.resize(874, 604);
  window.show();
  return QApplication::exec();
}
