#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

#include <stdexcept>

namespace kartocheck {

// A failure of the serial-port control, with the control's error number.
struct SerialPortError : std::runtime_error {
  static constexpr int InvalidNumber = 8002;  // there is no such port
  static constexpr int AlreadyOpen = 8005;    // another program holds the port
  static constexpr int NotAllowed = 70;       // the user may not open the port
  static constexpr int Other = 8000;          // anything else, a device that went away included

  SerialPortError(int number, const char* what) : std::runtime_error(what), Number(number) {}
  int Number;
};

// A serial port of the machine: 8 data bits, one stop bit. One port is open at a time. Every
// function but Close throws SerialPortError.
class SerialPort {
 public:
  // comNumber: 1 to 4; every other number is InvalidNumber. Flow control is off.
  virtual void Open(int comNumber) = 0;
  // Does nothing where no port is open.
  virtual void Close() noexcept = 0;

  // Settings text: baud rate, parity, data bits, stop bits, e.g. "9600,E,8,1".
  virtual void SetSettings(QStringView settings) = 0;

  virtual void SetDtr(bool on) = 0;
  virtual void SetRts(bool on) = 0;
  // DSR: a device drives the line. False on a port without modem lines.
  [[nodiscard]] virtual bool ReadDsr() = 0;

  virtual void EmptyReceiveBuffer() = 0;
  virtual void Send(QByteArrayView bytes) = 0;
  // Everything that has come since the buffer was emptied.
  [[nodiscard]] virtual QByteArray Received() = 0;

  virtual ~SerialPort() = default;
  SerialPort(const SerialPort&) = delete;
  SerialPort& operator=(const SerialPort&) = delete;

 protected:
  SerialPort() = default;
};

}  // namespace kartocheck
