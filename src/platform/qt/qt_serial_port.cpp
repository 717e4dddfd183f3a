#include "platform/qt/qt_serial_port.h"

#include <chrono>
#include <utility>

#include "platform/machine_serial_port.h"
#include "platform/port.h"
#include "platform/serial_devices.h"

namespace kartocheck {

namespace {

// How long a device that went away may stay unnoticed, and keep the event loop busy.
constexpr std::chrono::milliseconds LossCheckInterval{100};

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

QtSerialPort::QtSerialPort(ctapi::ComTable table) : table_(std::move(table)) {
  QObject::connect(&port_, &QSerialPort::errorOccurred, &port_,
                   [this](QSerialPort::SerialPortError error) { NoteError(error); });
  lossCheck_.setInterval(LossCheckInterval);
  QObject::connect(&lossCheck_, &QTimer::timeout, &port_, [this] { CheckForLoss(); });
}

void QtSerialPort::Open(int comNumber) {
  // Whatever the table says of others, the control knows no further ones.
  const auto entry = table_.find(comNumber);
  if (!Port(comNumber).IsTested() || entry == table_.end()) Throw(DeviceState::Absent);
  const std::string& device = entry->second;
  if (const DeviceState state = StateOfDevice(device); state != DeviceState::Free) Throw(state);

  port_.setPortName(QString::fromStdString(device));
  port_.setDataBits(QSerialPort::Data8);
  port_.setStopBits(QSerialPort::OneStop);
  port_.setFlowControl(QSerialPort::NoFlowControl);
  isLost_ = false;
  if (!port_.open(QIODevice::ReadWrite)) Throw(StateOfDevice(device));
  lossCheck_.start();
}

void QtSerialPort::Close() noexcept {
  lossCheck_.stop();
  if (port_.isOpen()) port_.close();
}

void QtSerialPort::SetSettings(QStringView settings) {
  const auto fields = settings.split(u',');
  const int baud = fields.value(0).toInt();
  const QStringView parity = fields.value(1);
  Use([&] {
    port_.setBaudRate(baud);
    port_.setParity(parity == u"E"   ? QSerialPort::EvenParity
                    : parity == u"O" ? QSerialPort::OddParity
                                     : QSerialPort::NoParity);
  });
}

void QtSerialPort::SetDtr(bool on) {
  Use([&] { port_.setDataTerminalReady(on); });
}

void QtSerialPort::SetRts(bool on) {
  Use([&] { port_.setRequestToSend(on); });
}

bool QtSerialPort::ReadDsr() {
  bool isSet = false;
  Use([&] { isSet = port_.pinoutSignals().testFlag(QSerialPort::DataSetReadySignal); });
  return isSet;
}

void QtSerialPort::EmptyReceiveBuffer() {
  Use([&] { port_.clear(QSerialPort::Input); });
}

void QtSerialPort::Send(QByteArrayView bytes) {
  Use([&] {
    port_.write(bytes.data(), bytes.size());
    port_.flush();
  });
}

QByteArray QtSerialPort::Received() {
  QByteArray bytes;
  Use([&] {
    bytes = port_.readAll();
    CheckForLoss();
  });
  return bytes;
}

// Also errors that come while the event loop runs between two calls count.
template <typename Call>
void QtSerialPort::Use(Call call) {
  ThrowWhereLost();
  call();
  ThrowWhereLost();
}

void QtSerialPort::ThrowWhereLost() const {
  if (isLost_ || !port_.isOpen()) throw SerialPortError(SerialPortError::Other, "port lost");
}

// Newer versions of Qt SerialPort take the end of file that a lost device reads as for nothing to
// read, and report no error. Every other call on it fails; asking for the lines is the one that
// changes nothing.
void QtSerialPort::CheckForLoss() {
  (void)port_.pinoutSignals();
}

// A device without modem lines refuses to set or tell them; that is no failure. One that is gone
// fails to be read and written.
void QtSerialPort::NoteError(QSerialPort::SerialPortError error) {
  using Error = QSerialPort::SerialPortError;
  const bool isLoss = error == Error::ResourceError || error == Error::DeviceNotFoundError ||
                      error == Error::ReadError || error == Error::WriteError;
  if (!isLoss || isLost_) return;
  isLost_ = true;
  // A lost device reports itself as readable without end. It cannot be closed from its own signal.
  QMetaObject::invokeMethod(
      &port_,
      [this] {
        if (isLost_) Close();
      },
      Qt::QueuedConnection);
}

std::unique_ptr<SerialPort> MachineSerialPort(ctapi::ComTable table) {
  return std::make_unique<QtSerialPort>(std::move(table));
}

}  // namespace kartocheck
