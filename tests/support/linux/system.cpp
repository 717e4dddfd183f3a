#include "support/system.h"

#include <csignal>

namespace kartocheck::test {

int MemoryFault() {
  return SIGSEGV;
}

QString NameOfMemoryFault() {
  return QStringLiteral("SIGSEGV");
}

QString NameOfUnknownCrash() {
  return QStringLiteral("Signal 4711");
}

QByteArray PlatformOfTests() {
  return "offscreen";
}

QStringList HarmlessWarnings() {
  return {QStringLiteral("This plugin does not support propagateSizeHints()"),
          QStringLiteral("This plugin does not support raise()"),
          QStringLiteral("This plugin does not support grabbing the keyboard"),
          QStringLiteral("QStandardPaths: XDG_RUNTIME_DIR not set")};
}

QStringList ClipboardSecretFormats() {
  return {QStringLiteral("x-kde-passwordManagerHint")};
}

ForeignProgram ProgramThatSays(const QString& text) {
  return {QStringLiteral("/bin/echo"), {text}};
}

ForeignProgram SilentProgram() {
  return {QStringLiteral("/bin/true"), {}};
}

void AskToEnd() {
  std::raise(SIGTERM);
}

}  // namespace kartocheck::test
