#include "platform/machine_serial_port.h"

#include <QList>

#include <chrono>
#include <utility>

#include "platform/port.h"
#include "protocol/windows/com_line.h"

namespace kartocheck {

namespace {

using ctapi::ComLine;
using std::chrono::milliseconds;

// For the few bytes of a probe, at the slowest rate.
constexpr milliseconds LongestWrite{500};

int NumberOf(DWORD error) {
  if (ctapi::MeansNoComPort(error)) return SerialPortError::InvalidNumber;
  return ctapi::MeansComPortInUse(error) ? SerialPortError::AlreadyOpen : SerialPortError::Other;
}

ComLine::Parity ParityOf(QStringView letter) {
  if (letter == u"E") return ComLine::Parity::Even;
  return letter == u"O" ? ComLine::Parity::Odd : ComLine::Parity::None;
}

class WindowsSerialPort final : public SerialPort {
 public:
  explicit WindowsSerialPort(ctapi::ComTable table) : table_(std::move(table)) {}

  void Open(int comNumber) override {
    // Whatever the table says of others, the control knows no further ones.
    const auto entry = table_.find(comNumber);
    if (!Port(comNumber).IsTested() || entry == table_.end()) {
      throw SerialPortError(SerialPortError::InvalidNumber, "no such port");
    }
    ctapi::OpenedComLine opened = ComLine::Open(entry->second);
    if (opened.Line == nullptr) {
      throw SerialPortError(NumberOf(opened.Error), "port cannot be opened");
    }
    line_ = std::move(opened.Line);
    received_.clear();
  }

  void Close() noexcept override { line_.reset(); }

  void SetSettings(QStringView settings) override {
    const auto fields = settings.split(u',');
    const int baud = fields.value(0).toInt();
    const ComLine::Parity parity = ParityOf(fields.value(1));
    Use([&](ComLine& line) { line.SetSettings(baud, parity); });
  }

  void SetDtr(bool on) override {
    Use([on](ComLine& line) { line.SetDtr(on); });
  }

  void SetRts(bool on) override {
    Use([on](ComLine& line) { line.SetRts(on); });
  }

  [[nodiscard]] bool ReadDsr() override {
    bool isSet = false;
    Use([&](ComLine& line) { isSet = line.ReadDsr(); });
    return isSet;
  }

  void EmptyReceiveBuffer() override {
    received_.clear();
    Use([](ComLine& line) { line.DiscardInput(); });
  }

  void Send(QByteArrayView bytes) override {
    const ctapi::ByteView sent(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                               static_cast<std::size_t>(bytes.size()));
    Use([sent](ComLine& line) { line.Write(sent, LongestWrite); });
  }

  // The driver keeps what comes while the event loop runs.
  [[nodiscard]] QByteArray Received() override {
    Use([this](ComLine& line) {
      const ctapi::Bytes bytes = line.Read(milliseconds(0)).Received;
      received_.append(reinterpret_cast<const char*>(bytes.data()),
                       static_cast<qsizetype>(bytes.size()));
    });
    return received_;
  }

 private:
  // A device that is gone is closed, so that its port can be used again.
  template <typename Call>
  void Use(Call call) {
    if (line_ == nullptr) throw SerialPortError(SerialPortError::Other, "port lost");
    try {
      call(*line_);
    } catch (const ctapi::ComLineLost& lost) {
      line_.reset();
      throw SerialPortError(SerialPortError::Other, lost.what());
    }
  }

  ctapi::ComTable table_;
  std::unique_ptr<ComLine> line_;  // none where no port is open
  QByteArray received_;            // since the buffer was emptied
};

}  // namespace

std::unique_ptr<SerialPort> MachineSerialPort(ctapi::ComTable table) {
  return std::make_unique<WindowsSerialPort>(std::move(table));
}

}  // namespace kartocheck
