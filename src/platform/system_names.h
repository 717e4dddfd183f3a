#pragma once

#include <QString>

namespace kartocheck {

// What only users of this operating system know by these names.
struct SystemNames {
  QString ServicePackage;  // the package of the PC/SC service
  QString DriverPackage;   // and that of the drivers of most readers
  QString StartService;    // the command that starts the service
};

[[nodiscard]] SystemNames NamesOfThisSystem();

// What ended a process that did not end by itself, such as "SIGSEGV". number: as QProcess tells it.
[[nodiscard]] QString NameOfCrash(int number);

}  // namespace kartocheck
