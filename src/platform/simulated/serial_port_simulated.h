#pragma once

#include <QByteArray>

#include "platform/port_directory.h"
#include "platform/serial_port.h"
#include "simulator/simulated_practice.h"

namespace kartocheck {

// The serial ports of a simulated practice. It must outlive them.
class SerialPortSimulated final : public SerialPort {
 public:
  explicit SerialPortSimulated(const ctapi::SimulatedPractice& practice) : practice_(practice) {}

  void Open(int comNumber) override;
  void Close() noexcept override;
  void SetSettings(QStringView settings) override;
  void SetDtr(bool on) override;
  void SetRts(bool on) override;
  [[nodiscard]] bool ReadDsr() override;
  void EmptyReceiveBuffer() override;
  void Send(QByteArrayView bytes) override;
  [[nodiscard]] QByteArray Received() override;

 private:
  // What stands at the open port now; a port that was unplugged meanwhile is lost.
  [[nodiscard]] ctapi::SerialLine Line() const;

  const ctapi::SimulatedPractice& practice_;
  int comNumber_ = 0;  // 0: none is open
  int baud_ = 0;
  QByteArray received_;
};

// What the system would know of the simulated ports.
class PortDirectorySimulated final : public PortDirectory {
 public:
  explicit PortDirectorySimulated(ctapi::SimulatedPractice& practice) : practice_(practice) {}

  [[nodiscard]] QString IdentificationOf(Port port) const override;
  // Every simulated port can be used.
  [[nodiscard]] PortTrouble TroubleOf(Port /*port*/) const override { return {}; }
  [[nodiscard]] std::vector<PortTrouble> TroublesWithoutReader() const override { return {}; }

 private:
  ctapi::SimulatedPractice& practice_;
};

}  // namespace kartocheck
