#include "discovery/serial_test.h"

#include <QByteArray>

#include <array>
#include <chrono>

#include "protocol/block.h"

namespace kartocheck {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds LineStateWait{500};
constexpr milliseconds ProbeWait{210};

struct SerialSettings {
  QStringView text;
  qsizetype shownCharacters;  // of the text, in front of " Baud "
};

// Rates that terminals use. The last two are not tried: no terminal of these series answers there,
// and each would cost another wait. The cut lengths give "19200," and "11520", which service staff
// know.
constexpr std::array<SerialSettings, 7> SettingsTable{{
    {u"9600,E,8,1", 4},
    {u"19200,E,8,1", 6},
    {u"38400,E,8,1", 5},
    {u"57600,E,8,1", 5},
    {u"115200,E,8,1", 5},
    {u"128000,E,8,1", 6},
    {u"256000,E,8,1", 6},
}};
constexpr std::size_t TriedSettings = 5;

// The port from Open to the end of the scope.
class OpenPort {
 public:
  OpenPort(SerialPort& serial, Port port) : serial_(serial) { serial_.Open(port.Number()); }
  ~OpenPort() { serial_.Close(); }
  OpenPort(const OpenPort&) = delete;
  OpenPort& operator=(const OpenPort&) = delete;

 private:
  SerialPort& serial_;
};

SerialTest TestOf(const SerialPortError& error) {
  switch (error.Number) {
    case SerialPortError::InvalidNumber:
      return SerialTest::NotPresent;
    case SerialPortError::AlreadyOpen:
      return SerialTest::InUse;
    default:
      return SerialTest::Failed;
  }
}

QByteArray FrameOf(const ctapi::Block& block) {
  return QByteArrayView(ctapi::Encode(block)).toByteArray();
}

bool IsAnswered(const SerialSettings& settings, SerialPort& serial, EventLoop& eventLoop) {
  serial.SetSettings(settings.text);
  serial.EmptyReceiveBuffer();
  serial.Send(FrameOf({ctapi::NadTo(ctapi::Unit::Terminal), ctapi::pcb::Resynch}));
  eventLoop.Wait(ProbeWait);
  constexpr std::uint8_t granted = ctapi::pcb::Resynch | ctapi::pcb::Response;
  return serial.Received() == FrameOf({ctapi::NadFrom(ctapi::Unit::Terminal), granted});
}

}  // namespace

SerialTest TestSerialPort(Port port, SerialPort& serial, EventLoop& eventLoop, bool& lineState) {
  try {
    const OpenPort open(serial, port);
    serial.SetDtr(true);
    eventLoop.Wait(LineStateWait);
    lineState = serial.ReadDsr();
    serial.SetDtr(false);
    return SerialTest::Opened;
  } catch (const SerialPortError& error) {
    return TestOf(error);
  }
}

void ProbeSerialSettings(Port port, SerialPort& serial, EventLoop& eventLoop, PortEntry& entry) {
  entry.AvailText = u"Unbekannt! ";
  try {
    const OpenPort open(serial, port);
    serial.SetDtr(true);
    serial.SetRts(true);
    for (std::size_t row = 0; row < TriedSettings; ++row) {
      const SerialSettings& settings = SettingsTable[row];
      if (!IsAnswered(settings, serial, eventLoop)) continue;
      entry.AvailText = QString(settings.text.first(settings.shownCharacters) + u" Baud ");
      entry.SettingsFound = true;
      break;
    }
    serial.SetRts(false);
    serial.SetDtr(false);
  } catch (const SerialPortError&) {
    // The port is gone or was never there; what was found so far stands.
  }
  eventLoop.Yield();
}

}  // namespace kartocheck
