#pragma once

#include <functional>
#include <streambuf>
#include <string>

#include "gui/flow_logs/flow_log.h"
#include "gui/support/quick_event_loop.h"
#include "platform/ct_api.h"
#include "platform/dialogs.h"
#include "platform/display.h"
#include "platform/serial_port.h"

// Each passes every call on and notes it.

namespace kartocheck::test {

class LoggedLibrary final : public CtApi {
 public:
  LoggedLibrary(CtApi& library, FlowLog& log) : library_(library), log_(log) {}

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override;
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override;
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override;
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override;

 private:
  CtApi& library_;
  FlowLog& log_;
};

class LoggedSerialPort final : public SerialPort {
 public:
  LoggedSerialPort(SerialPort& serial, FlowLog& log) : serial_(serial), log_(log) {}

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
  void Do(const QString& name, const std::function<QString()>& call);

  SerialPort& serial_;
  FlowLog& log_;
};

// Notes how long the program wants to wait, and hardly does.
class LoggedEventLoop final : public EventLoop {
 public:
  explicit LoggedEventLoop(FlowLog& log) : log_(log) {}

  void Yield() override { loop_.Yield(); }
  void Wait(std::chrono::milliseconds duration) override;

 private:
  QuickEventLoop loop_;
  FlowLog& log_;
};

// The texts of the boxes as the procedures make them, with their CR LF.
class LoggedDialogs final : public Dialogs {
 public:
  LoggedDialogs(Dialogs& dialogs, FlowLog& log) : dialogs_(dialogs), log_(log) {}

  void Tell(Icon icon, const QString& title, const QString& text) override;
  [[nodiscard]] Answer Ask(const Question& question) override;

 private:
  Dialogs& dialogs_;
  FlowLog& log_;
};

// The status texts.
class LoggedDisplay final : public Display {
 public:
  LoggedDisplay(Display& display, FlowLog& log) : display_(display), log_(log) {}

  void ShowStatusText(const QString& text) override;

 private:
  Display& display_;
  FlowLog& log_;
};

// What is written to a stream, a line of the log for each of its lines.
class LoggedStream final : public std::streambuf {
 public:
  // mark: the stream's name in the log.
  LoggedStream(QString mark, FlowLog& log) : mark_(std::move(mark)), log_(log) {}

 protected:
  int_type overflow(int_type character) override;
  // A line that is not ended, as a prompt, is noted when it is flushed.
  int sync() override;

 private:
  void Note(QStringView end);

  QString mark_;
  FlowLog& log_;
  std::string line_;
};

}  // namespace kartocheck::test
