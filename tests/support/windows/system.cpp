#include "support/system.h"

#include <windows.h>

namespace kartocheck::test {

int MemoryFault() {
  return static_cast<int>(EXCEPTION_ACCESS_VIOLATION);
}

QString NameOfMemoryFault() {
  return QStringLiteral("Zugriffsverletzung, 0xC0000005");
}

QString NameOfUnknownCrash() {
  return QStringLiteral("0x00001267");
}

QByteArray PlatformOfTests() {
  return {};
}

// The last three under Wine.
QStringList HarmlessWarnings() {
  return {QStringLiteral("This plugin does not support propagateSizeHints()"),
          QStringLiteral("This plugin does not support raise()"),
          QStringLiteral("This plugin does not support grabbing the keyboard"),
          QStringLiteral("setGeometry: Unable to set geometry"),
          QStringLiteral("EnableNonClientDpiScaling() failed"),
          QStringLiteral("QPixmap::fromWinHICON()"),
          QStringLiteral("SetProcessDpiAwarenessContext(")};
}

QStringList ClipboardSecretFormats() {
  return {QStringLiteral("ExcludeClipboardContentFromMonitorProcessing"),
          QStringLiteral("CanIncludeInClipboardHistory"),
          QStringLiteral("CanUploadToCloudClipboard")};
}

ForeignProgram ProgramThatSays(const QString& text) {
  return {QStringLiteral("cmd.exe"), {QStringLiteral("/c"), QStringLiteral("echo"), text}};
}

ForeignProgram SilentProgram() {
  return {QStringLiteral("cmd.exe"), {QStringLiteral("/c"), QStringLiteral("exit")}};
}

void AskToEnd() {
  const HWND receiver = ::FindWindowW(L"KartoCheckTerminationSignal", nullptr);
  ::SendMessageW(receiver, WM_ENDSESSION, TRUE, 0);
}

}  // namespace kartocheck::test
