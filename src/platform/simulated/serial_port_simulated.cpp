#include "platform/simulated/serial_port_simulated.h"

#include <QList>

#include "platform/port.h"

namespace kartocheck {

namespace {

using State = ctapi::SerialLine::State;

}  // namespace

void SerialPortSimulated::Open(int comNumber) {
  // As with the machine's own ports, the control knows no further ones.
  const State state = Port(comNumber).IsTested()
                          ? practice_.SerialLineAt(static_cast<std::uint16_t>(comNumber)).Port
                          : State::Absent;
  switch (state) {
    case State::Absent:
      throw SerialPortError(SerialPortError::InvalidNumber, "no such port");
    case State::InUse:
      throw SerialPortError(SerialPortError::AlreadyOpen, "port in use");
    case State::Failing:
      throw SerialPortError(SerialPortError::Other, "port cannot be opened");
    case State::Present:
      break;
  }
  comNumber_ = comNumber;
  received_.clear();
}

void SerialPortSimulated::Close() noexcept {
  comNumber_ = 0;
}

void SerialPortSimulated::SetSettings(QStringView settings) {
  baud_ = settings.split(u',').value(0).toInt();
}

// Nothing hangs on these lines, but a port that is gone has none.
void SerialPortSimulated::SetDtr(bool /*on*/) {
  (void)Line();
}

void SerialPortSimulated::SetRts(bool /*on*/) {
  (void)Line();
}

bool SerialPortSimulated::ReadDsr() {
  return Line().Signal;
}

void SerialPortSimulated::EmptyReceiveBuffer() {
  received_.clear();
}

void SerialPortSimulated::Send(QByteArrayView bytes) {
  const ctapi::Bytes answer =
      Line().AnswerTo(baud_, {reinterpret_cast<const std::uint8_t*>(bytes.data()),
                              static_cast<std::size_t>(bytes.size())});
  received_.append(reinterpret_cast<const char*>(answer.data()),
                   static_cast<qsizetype>(answer.size()));
}

QByteArray SerialPortSimulated::Received() {
  (void)Line();
  return received_;
}

ctapi::SerialLine SerialPortSimulated::Line() const {
  const ctapi::SerialLine line = practice_.SerialLineAt(static_cast<std::uint16_t>(comNumber_));
  if (line.Port != State::Present) throw SerialPortError(SerialPortError::Other, "port lost");
  return line;
}

QString PortDirectorySimulated::IdentificationOf(Port port) const {
  const auto* const attached = practice_.PortAt(static_cast<std::uint16_t>(port.Number()));
  return attached == nullptr ? QString() : QString::fromStdString(attached->DeviceId);
}

}  // namespace kartocheck
