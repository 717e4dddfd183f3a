#include "platform/system_names.h"

#include <cstring>

namespace kartocheck {

// As Debian and its relatives call them, and as systemd starts services.
SystemNames NamesOfThisSystem() {
  return {.ServicePackage = QStringLiteral("pcscd"),
          .DriverPackage = QStringLiteral("libccid"),
          .StartService = QStringLiteral("sudo systemctl start pcscd")};
}

QString NameOfCrash(int number) {
  const char* const abbreviation = ::sigabbrev_np(number);
  if (abbreviation == nullptr) return u"Signal " + QString::number(number);
  return u"SIG" + QString::fromLatin1(abbreviation);
}

}  // namespace kartocheck
