#include <QApplication>

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

#include "ui/german_texts.h"
#include "ui/readable_style.h"

namespace {

// What Qt's offscreen platform and a machine without a session have to say about themselves.
constexpr std::array<QStringView, 4> Harmless{
    u"This plugin does not support propagateSizeHints()",
    u"This plugin does not support raise()",
    u"This plugin does not support grabbing the keyboard",
    u"QStandardPaths: XDG_RUNTIME_DIR not set",
};

// A warning of Qt is a mistake in how the window uses it.
void FailOnWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  const bool harmless = std::any_of(Harmless.begin(), Harmless.end(),
                                    [&](QStringView known) { return text.startsWith(known); });
  if (type != QtDebugMsg && type != QtInfoMsg && !harmless) {
    ADD_FAILURE() << "Qt warns: " << text.toStdString();
  }
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // Whatever the machine's locale is: Qt warns of one that is not UTF-8.
  qputenv("LC_ALL", "C.UTF-8");
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(FailOnWarning);
  QApplication application(argc, argv);
  kartocheck::InstallReadableStyle(QStringLiteral("fusion"));
  // The tests of a program that is about to close go on after its last window.
  QApplication::setQuitOnLastWindowClosed(false);
  kartocheck::InstallGermanTexts(application);
  return RUN_ALL_TESTS();
}
