#include "platform/qt_serial_port.h"

#include <utility>

namespace kartocheck {

namespace {

// Numbers that the control knows; whatever the table says of others, they are invalid.
constexpr int LastComNumber = 4;

[[noreturn]] void Throw(DeviceState state) {
  switch (state) {
    case DeviceState::Absent:
      throw SerialPortError(SerialPortError::InvalidNumber, "no such port");
    case DeviceState::InUse:
      throw SerialPortError(SerialPortError::AlreadyOpen, "port in use");
    case DeviceState::NotAllowed:
      throw SerialPortError(SerialPortError::NotAllowed, "permission denied");
    default:
      throw SerialPortError(SerialPortError::Other, "port cannot be opened");
  }
}

}  // namespace

QtSerialPort::QtSerialPort(ComTable table) : table_(std::move(table)) {}

void QtSerialPort::Open(int comNumber) {
  const auto device = table_.constFind(comNumber);
  if (comNumber < 1 || comNumber > LastComNumber || device == table_.constEnd()) {
    Throw(DeviceState::Absent);
  }
  if (const DeviceState state = StateOfDevice(*device); state != DeviceState::Free) Throw(state);

  port_.setPortName(*device);
  port_.setDataBits(QSerialPort::Data8);
  port_.setStopBits(QSerialPort::OneStop);
  port_.setFlowControl(QSerialPort::NoFlowControl);
  if (!port_.open(QIODevice::ReadWrite)) Throw(StateOfDevice(*device));
}

void QtSerialPort::Close() noexcept {
  if (port_.isOpen()) port_.close();
  port_.clearError();
}

void QtSerialPort::SetSettings(QStringView settings) {
  const auto fields = settings.split(u',');
  const int baud = fields.value(0).toInt();
  const QStringView parity = fields.value(1);
  port_.setBaudRate(baud);
  port_.setParity(parity == u"E"   ? QSerialPort::EvenParity
                  : parity == u"O" ? QSerialPort::OddParity
                                   : QSerialPort::NoParity);
  ThrowOnLoss();
}

void QtSerialPort::SetDtr(bool on) {
  port_.setDataTerminalReady(on);
  ThrowOnLoss();
}

void QtSerialPort::SetRts(bool on) {
  port_.setRequestToSend(on);
  ThrowOnLoss();
}

bool QtSerialPort::ReadDsr() {
  const auto lines = port_.pinoutSignals();
  ThrowOnLoss();
  return lines.testFlag(QSerialPort::DataSetReadySignal);
}

void QtSerialPort::EmptyReceiveBuffer() {
  port_.clear(QSerialPort::Input);
  ThrowOnLoss();
}

void QtSerialPort::Send(QByteArrayView bytes) {
  port_.write(bytes.data(), bytes.size());
  port_.flush();
  ThrowOnLoss();
}

QByteArray QtSerialPort::Received() {
  ThrowOnLoss();
  return port_.readAll();
}

// A device without modem lines refuses to set or tell them; that is no failure. One that is gone
// answers with a resource error.
void QtSerialPort::ThrowOnLoss() {
  const QSerialPort::SerialPortError error = port_.error();
  port_.clearError();
  if (error == QSerialPort::ResourceError || error == QSerialPort::DeviceNotFoundError ||
      !port_.isOpen()) {
    throw SerialPortError(SerialPortError::Other, "port lost");
  }
}

SerialPortDirectory::SerialPortDirectory(const std::vector<SerialDevice>& devices, ComTable table)
    : table_(std::move(table)) {
  for (const SerialDevice& device : devices) {
    identifications_.insert(device.path, device.identification);
  }
}

QString SerialPortDirectory::IdentificationOf(int pn) const {
  return identifications_.value(table_.value(pn));
}

QString SerialPortDirectory::HintFor(int pn) const {
  const QString device = table_.value(pn);
  if (device.isEmpty() || StateOfDevice(device) != DeviceState::NotAllowed) return {};
  const QString group = GroupOfDevice(device);
  return u"Sie dürfen " + device + u" nicht öffnen. Lassen Sie sich in die Gruppe \"" + group +
         u"\" aufnehmen und melden Sie sich neu an.";
}

}  // namespace kartocheck
