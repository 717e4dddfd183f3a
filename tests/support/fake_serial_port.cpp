#include "support/fake_serial_port.h"

#include <gtest/gtest.h>

namespace kartocheck::test {

FakeSerialPort::~FakeSerialPort() {
  EXPECT_EQ(open_, 0) << "COM " << open_ << " was left open";
}

QMap<int, FakeSerialLine> FakeSerialPort::FourPorts() {
  return {{1, {}}, {2, {}}, {3, {}}, {4, {}}};
}

void FakeSerialPort::Open(int comNumber) {
  EXPECT_EQ(open_, 0) << "opened twice";
  Note(QStringLiteral("open %1").arg(comNumber));
  const auto line = lines_.constFind(comNumber);
  const int error =
      line == lines_.constEnd() ? int{SerialPortError::InvalidNumber} : line->openError;
  if (error != 0) throw SerialPortError(error, "cannot be opened");
  open_ = comNumber;
  received_.clear();
}

void FakeSerialPort::Close() noexcept {
  if (open_ == 0) return;
  calls_.push_back(QStringLiteral("close"));
  open_ = 0;
}

void FakeSerialPort::SetSettings(QStringView settings) {
  NoteOpen(u"settings " + settings.toString());
  baud_ = settings.split(u',').value(0).toInt();
}

void FakeSerialPort::SetDtr(bool on) {
  NoteOpen(on ? QStringLiteral("dtr on") : QStringLiteral("dtr off"));
}

void FakeSerialPort::SetRts(bool on) {
  NoteOpen(on ? QStringLiteral("rts on") : QStringLiteral("rts off"));
}

bool FakeSerialPort::ReadDsr() {
  NoteOpen(QStringLiteral("read dsr"));
  return lines_[open_].dsr;
}

void FakeSerialPort::EmptyReceiveBuffer() {
  NoteOpen(QStringLiteral("empty"));
  received_.clear();
}

void FakeSerialPort::Send(QByteArrayView bytes) {
  NoteOpen(u"send " + QString::fromLatin1(bytes.toByteArray().toHex().toUpper()));
  received_ += lines_[open_].replies.value(baud_);
}

QByteArray FakeSerialPort::Received() {
  NoteOpen(QStringLiteral("received"));
  return received_;
}

void FakeSerialPort::Note(const QString& call) {
  calls_.push_back(call);
  ++fallibleCalls_;
  if (onCall) onCall(call);
  if (failingCall != 0 && fallibleCalls_ >= failingCall) throw SerialPortError(failure, "failed");
}

void FakeSerialPort::NoteOpen(const QString& call) {
  EXPECT_NE(open_, 0) << call.toStdString() << " without an open port";
  Note(call);
}

}  // namespace kartocheck::test
