#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <functional>
#include <vector>

#include "platform/serial_port.h"

namespace kartocheck::test {

// What a test's machine has on a COM number.
struct FakeSerialLine {
  int openError = 0;                // of SerialPortError; 0: the port opens
  bool dsr = true;                  // a device drives the line
  QMap<int, QByteArray> replies{};  // by baud rate: what follows a frame
};

// The serial ports of a test. Writes down every call: "open 1", "settings 9600,E,8,1", "dtr on",
// "rts off", "read dsr", "empty", "send 12C000D2", "received", "close". Calls on a port that is not
// open, and a second open, fail the test; so does a port that is left open.
class FakeSerialPort final : public SerialPort {
 public:
  // Without lines, every port is absent.
  FakeSerialPort() = default;
  explicit FakeSerialPort(QMap<int, FakeSerialLine> lines) : lines_(std::move(lines)) {}
  ~FakeSerialPort() override;

  // COM 1 to 4, each with a device that drives the line and answers no probe.
  [[nodiscard]] static QMap<int, FakeSerialLine> FourPorts();

  // The n-th call but Close, from 1, fails with this error, and every call behind it, as if the
  // device were unplugged. 0: none fails.
  int failingCall = 0;
  int failure = SerialPortError::Other;

  std::function<void(const QString& call)> onCall;

  [[nodiscard]] FakeSerialLine& operator[](int comNumber) { return lines_[comNumber]; }
  [[nodiscard]] const std::vector<QString>& Calls() const { return calls_; }
  // Calls but Close.
  [[nodiscard]] int FallibleCalls() const { return fallibleCalls_; }

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
  void Note(const QString& call);
  void NoteOpen(const QString& call);

  QMap<int, FakeSerialLine> lines_;
  std::vector<QString> calls_;
  int fallibleCalls_ = 0;
  int open_ = 0;  // COM number; 0: none
  int baud_ = 0;
  QByteArray received_;
};

}  // namespace kartocheck::test
