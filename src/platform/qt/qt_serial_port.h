#pragma once

#include <QSerialPort>
#include <QTimer>

#include "platform/serial_port.h"
#include "protocol/com_table.h"

namespace kartocheck {

// The serial ports of the machine through QSerialPort. Needs a running event loop to receive.
class QtSerialPort final : public SerialPort {
 public:
  explicit QtSerialPort(ctapi::ComTable table);

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
  template <typename Call>
  void Use(Call call);
  void ThrowWhereLost() const;
  void CheckForLoss();
  void NoteError(QSerialPort::SerialPortError error);

  ctapi::ComTable table_;
  QSerialPort port_;
  QTimer lossCheck_;     // runs while the port is open
  bool isLost_ = false;  // the device went away while the port was open
};

}  // namespace kartocheck
