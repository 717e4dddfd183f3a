#include "main/no_display.h"

#include <QMessageLogContext>
#include <QString>
#include <QStringList>

#include <cstdlib>
#include <iostream>
#include <utility>

#include "console/console_run.h"
#include "platform/plain_message.h"

namespace kartocheck {

namespace {

// A message handler is a plain function.
QStringList held;

void TellHeld() {
  for (const QString& message : std::exchange(held, {})) {
    std::cerr << message.toStdString() << '\n';
  }
}

void Take(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (type != QtFatalMsg) {
    held.append(qFormatLogMessage(type, context, text));
    return;
  }
  TellPlainly(StandardStream::Error,
              QStringLiteral("KartoCheck: Hier lässt sich kein Fenster öffnen. Ohne Fenster: "
                             "kartocheck --console"));
  TellHeld();
  std::cerr.flush();
  std::_Exit(exit_status::UsageOrFatal);
}

}  // namespace

NoDisplayWatch::NoDisplayWatch() : before_(qInstallMessageHandler(&Take)) {}

NoDisplayWatch::~NoDisplayWatch() {
  qInstallMessageHandler(before_);
  TellHeld();
}

}  // namespace kartocheck
