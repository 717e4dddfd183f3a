#include <QApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <gtest/gtest.h>

#include "support/system.h"
#include "ui/german_texts.h"
#include "ui/readable_style.h"

namespace {

// A warning of Qt is a mistake in how the window uses it.
void FailOnWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  static const QStringList known = kartocheck::test::HarmlessWarnings();
  const bool harmless = std::any_of(known.begin(), known.end(),
                                    [&](const QString& each) { return text.startsWith(each); });
  if (type != QtDebugMsg && type != QtInfoMsg && !harmless) {
    ADD_FAILURE() << "Qt warns: " << text.toStdString();
  }
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // Whatever the machine's locale is: Qt warns of one that is not UTF-8.
  qputenv("LC_ALL", "C.UTF-8");
  const QByteArray platform = kartocheck::test::PlatformOfTests();
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && !platform.isEmpty()) {
    qputenv("QT_QPA_PLATFORM", platform);
  }
  // What Qt's file dialogue keeps of its last visit is neither read nor written.
  const QTemporaryDir settings;
  qputenv("XDG_CONFIG_HOME", settings.path().toUtf8());
  qInstallMessageHandler(FailOnWarning);
  // The tests answer Qt's own dialogues; those of the system have no widgets.
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  QApplication application(argc, argv);
  kartocheck::InstallReadableStyle(QStringLiteral("fusion"));
  // The tests of a program that is about to close go on after its last window.
  QApplication::setQuitOnLastWindowClosed(false);
  kartocheck::InstallGermanTexts(application);
  return RUN_ALL_TESTS();
}
