#include "platform/system_names.h"

namespace kartocheck {

// As Debian and its relatives call them, and as systemd starts services.
SystemNames NamesOfThisSystem() {
  return {.ServicePackage = QStringLiteral("pcscd"),
          .DriverPackage = QStringLiteral("libccid"),
          .StartService = QStringLiteral("sudo systemctl start pcscd")};
}

}  // namespace kartocheck
