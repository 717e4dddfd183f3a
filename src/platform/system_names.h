#pragma once

#include <QString>

namespace kartocheck {

// What to do about the card reader service, told as only users of this operating system know it:
// by the names of its packages, services and programs. One or two sentences each.
struct ReaderServiceAdvice {
  QString NotInstalled;  // there is no service
  QString NotRunning;
  QString NoReader;  // it runs and knows no reader
  QString Refuses;   // it runs and refuses this user
};

[[nodiscard]] ReaderServiceAdvice AdviceOfThisSystem();

// What ended a process that did not end by itself, such as "SIGSEGV". number: as QProcess tells it.
[[nodiscard]] QString NameOfCrash(int number);

// Whether a process that ended with this status did so by a crash, though QProcess takes it for an
// end of its own.
[[nodiscard]] bool IsCrashStatus(int status);

// The Qt platform that draws texts without a display; empty where the usual one does.
[[nodiscard]] QString PlatformWithoutDisplay();

}  // namespace kartocheck
