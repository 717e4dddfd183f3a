#include "host/serial_device.h"

#include <algorithm>

#include "protocol/windows/com_line.h"

namespace ctapi::host {

namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::steady_clock;

constexpr int BitsPerByte = 11;  // start bit, 8 data bits, parity, stop bit
// A line without flow control takes every byte; this is for drivers that stop all the same.
constexpr milliseconds SendingStuck{2'000};

std::int8_t CodeOfOpenError(DWORD error) {
  // A port that is refused is no missing one: -1 would say that there is none.
  return MeansNoComPort(error) ? code::InvalidParameter : code::HostError;
}

// What the line throws, in the words of this layer.
template <typename Call>
auto OnLine(Call call) {
  try {
    return call();
  } catch (const ComLineLost& lost) {
    throw LineLost(lost.what());
  }
}

class SerialDevice final : public LinePort {
 public:
  explicit SerialDevice(std::unique_ptr<ComLine> line) : line_(std::move(line)) { SetBaud(9600); }

  void Send(ByteView bytes) override;
  Reception Receive(milliseconds longest) override;
  void DiscardInput() override {
    OnLine([this] { line_->DiscardInput(); });
  }
  void SetBaud(std::int32_t baud) override;

 private:
  std::unique_ptr<ComLine> line_;
  std::int32_t baud_ = 9600;
  steady_clock::time_point sent_{};  // when the last byte will have left the line
};

void SerialDevice::Send(ByteView bytes) {
  const nanoseconds onTheLine(static_cast<std::int64_t>(bytes.size()) * BitsPerByte *
                              1'000'000'000 / baud_);
  const auto begin = std::max(steady_clock::now(), sent_);
  // Some drivers return when the bytes have left, and not as soon as they have taken them.
  OnLine([&] { line_->Write(bytes, SendingStuck + std::chrono::ceil<milliseconds>(onTheLine)); });
  sent_ = begin + onTheLine;
}

LinePort::Reception SerialDevice::Receive(milliseconds longest) {
  const auto end = std::max(steady_clock::now(), sent_) + longest;
  const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
  ComLine::Reception reception = OnLine([&] { return line_->Read(left); });
  return {std::move(reception.Received), reception.Damaged};
}

void SerialDevice::SetBaud(std::int32_t baud) {
  OnLine([&] { line_->SetSettings(baud, ComLine::Parity::Even); });
  baud_ = baud;
}

}  // namespace

OpenedLine OpenSerialDevice(const std::string& path) {
  OpenedComLine opened = ComLine::Open(path);
  if (opened.Error != ERROR_SUCCESS) return {.Code = CodeOfOpenError(opened.Error)};
  try {
    return {code::Success, std::make_unique<SerialDevice>(std::move(opened.Line))};
  } catch (const LineLost&) {
    return {.Code = code::HostError};
  }
}

}  // namespace ctapi::host
