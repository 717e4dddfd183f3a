#pragma once

#include <QString>
#include <QStringList>

namespace kartocheck {

// What the operating system knows of the ports behind the CT-API port numbers.
class PortDirectory {
 public:
  // How the system names the device on the port: USB vendor, product and serial number, or a
  // reader's full name. Empty where it knows none.
  [[nodiscard]] virtual QString IdentificationOf(int pn) const = 0;

  // Why the port cannot be used and what to do about it, one German sentence; empty where nothing
  // is known to be in the way.
  [[nodiscard]] virtual QString HintFor(int pn) const = 0;

  // Why no card reader was found, and what to do about it: German sentences, the nearest reason
  // first. Empty where nothing is known to be in the way.
  [[nodiscard]] virtual QStringList HintsWithoutReader() const = 0;

  virtual ~PortDirectory() = default;
  PortDirectory(const PortDirectory&) = delete;
  PortDirectory& operator=(const PortDirectory&) = delete;

 protected:
  PortDirectory() = default;
};

}  // namespace kartocheck
