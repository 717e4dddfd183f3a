#include "platform/qt/helper_process.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <utility>

#include "platform/foreground.h"
#include "platform/system_names.h"

namespace kartocheck {

namespace {

using std::chrono::milliseconds;
namespace helper = ctapi::helper;

// A card's answer takes milliseconds: so long the program waits without looking at the window.
constexpr milliseconds Moment{10};
// For the library to close what it has open.
constexpr milliseconds LongestEnd{2'000};

}  // namespace

HelperProcess::HelperProcess(const QString& program, const QStringList& candidates) {
  process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  process_.start(program, candidates);
  if (!process_.waitForStarted()) {
    throw LibraryUnusable({LibraryFaultKind::HelperMissing, program.toStdString()});
  }
}

HelperProcess::~HelperProcess() {
  if (process_.state() == QProcess::NotRunning) return;
  process_.closeWriteChannel();
  if (!process_.waitForFinished(static_cast<int>(LongestEnd.count()))) Kill();
}

void HelperProcess::Kill() {
  process_.kill();
  process_.waitForFinished();
}

void HelperProcess::Send(const helper::Message& call) {
  const ctapi::Bytes bytes = helper::Encode(call);
  // A library may ask its user something.
  LetComeToFront(process_.processId());
  process_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
}

std::optional<helper::Message> HelperProcess::Receive(PendingCall& pending) {
  if (!WaitBlocking(Moment) && !WaitInEventLoop(pending)) return std::nullopt;
  return TakeMessage();
}

std::optional<helper::Message> HelperProcess::Receive(milliseconds longest) {
  if (!WaitBlocking(longest)) return std::nullopt;
  return TakeMessage();
}

bool HelperProcess::HasMessage() {
  const QByteArray bytes = process_.readAllStandardOutput();
  received_.insert(received_.end(), bytes.begin(), bytes.end());
  return helper::MissingBytes(received_) == 0;
}

helper::Message HelperProcess::TakeMessage() {
  auto message = helper::Decode(std::exchange(received_, {}));
  if (message) return *std::move(message);
  Kill();
  throw LibraryUnusable({LibraryFaultKind::Garbled});
}

bool HelperProcess::WaitBlocking(milliseconds longest) {
  const QDeadlineTimer deadline(longest);
  while (!HasMessage()) {
    if (process_.state() == QProcess::NotRunning) TellOfEnd();
    if (deadline.hasExpired()) return false;
    process_.waitForReadyRead(static_cast<int>(deadline.remainingTime()));
  }
  return true;
}

bool HelperProcess::WaitInEventLoop(PendingCall& pending) {
  bool isGivenUp = false;
  QEventLoop loop;
  QObject::connect(&process_, &QProcess::readyReadStandardOutput, &loop, &QEventLoop::quit);
  QObject::connect(&process_, &QProcess::finished, &loop, &QEventLoop::quit);
  QTimer lateness;
  lateness.setSingleShot(true);
  QObject::connect(&lateness, &QTimer::timeout, &loop, [&pending] { pending.BecomeLate(); });
  lateness.start(pending.Patience() - Moment);

  const PendingCall::Wait wait(pending, [&] {
    isGivenUp = true;
    loop.quit();
  });
  while (!HasMessage()) {
    if (process_.state() == QProcess::NotRunning) TellOfEnd();
    const bool isProgramEnding = loop.exec() != 0;
    if (isGivenUp) return false;
    // No event loop runs any more then.
    if (isProgramEnding) process_.waitForReadyRead(static_cast<int>(Moment.count()));
  }
  return true;
}

void HelperProcess::TellOfEnd() {
  const int status = process_.exitCode();
  const bool bySignal = process_.exitStatus() == QProcess::CrashExit || IsCrashStatus(status);
  throw LibraryUnusable(
      {.Kind = bySignal ? LibraryFaultKind::EndedBySignal : LibraryFaultKind::EndedWithStatus,
       .Number = status});
}

}  // namespace kartocheck
