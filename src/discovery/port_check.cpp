#include "discovery/port_check.h"

#include "discovery/serial_test.h"
#include "discovery/terminal_identification.h"
#include "terminal/reset_and_close.h"

namespace kartocheck {

namespace {

// The verdict with a blank at its end marks a port on which a link was tried for a line signal or
// answered with a transmission error; without it, a free port without a terminal.
constexpr QStringView AvailableTried = u"Ist verfügbar! ";
constexpr QStringView AvailableFree = u"Ist verfügbar!";

// Probes the line settings and opens the link; a link still open is ended first.
CtCode ProbeAndOpen(Port port, const PortCheckTarget& with) {
  with.port.PortPresent = true;
  with.port.PortError = false;
  with.port.SettingsFound = false;
  ProbeSerialSettings(port, with.serial, with.eventLoop, with.port);
  if (with.link.IsOpen()) ResetAndClose(with.link);
  const CtCode code = with.link.CtOpen(port);
  if (code == ctapi::code::Success && !with.port.SettingsFound) {
    with.port.AvailText = with.port.BaudText.Padded();
  }
  return code;
}

// A terminal that was exchanged inherits nothing.
void ClearForCheck(const PortCheckTarget& with) {
  const bool answered = with.info.Answered && with.remember == Remember::ThatItAnswered;
  with.info = {};
  with.info.Answered = answered;
  with.port = {};
  with.port.IsChecked = true;
}

void MarkUnopened(CtCode code, TerminalInfo& info) {
  ResetTerminalInfo(info);
  info.ModelName =
      code == ctapi::code::TransmissionError ? u"Modell nicht bekannt!" : u"Unbekanntes Gerät?! ";
}

void CheckFurtherPort(Port port, const PortCheckTarget& with) {
  const CtCode code = ProbeAndOpen(port, with);
  with.port.ScanResult = code;
  if (code != ctapi::code::Success) return MarkUnopened(code, with.info);
  (void)IdentifyTerminal(with.link, port, with.info, with.port);
  with.link.CtClose();
}

void MarkUnusable(SerialTest test, PortEntry& port) {
  port.AvailText = u"";
  switch (test) {
    case SerialTest::NotPresent:
      port.PortText = u"Ist nicht vorhanden bzw. wird vom System benutzt!";
      port.PortPresent = false;
      port.ScanResult = scan_result::NotAvailable;
      break;
    case SerialTest::InUse:
      port.PortText = u"Wird vom System benutzt!";
      port.PortPresent = true;
      port.ScanResult = scan_result::NotAvailable;
      break;
    default:
      port.PortText = u"PortOpen Fehlermeldung!!!";
      port.PortPresent = true;
      port.PortError = true;
      port.ScanResult = scan_result::PortError;
  }
}

void CheckWithLineSignal(Port port, CtCode code, const PortCheckTarget& with) {
  with.port.ScanResult = code;
  if (code != ctapi::code::Success) {
    MarkUnopened(code, with.info);
  } else {
    const Identification identified = IdentifyTerminal(with.link, port, with.info, with.port);
    const CtCode closed = with.link.CtClose();
    const QString settings = with.settingsOf(port);
    if (identified == Identification::Finished && closed == ctapi::code::Success &&
        !settings.isEmpty()) {
      with.info.SerialSettings = settings;
    }
  }
  with.port.PortText = AvailableTried;
}

void CheckWithoutLineSignal(Port port, CtCode code, const PortCheckTarget& with) {
  PortEntry& entry = with.port;
  switch (code) {
    case ctapi::code::Success:
      entry.ScanResult = scan_result::NoLineSignal;
      (void)IdentifyTerminal(with.link, port, with.info, entry);
      if (!with.info.UsbVirtualCom) {
        entry.PortText = u"USB-Kabel oder falsches RS 232 Kabel/Verbinder!";
      }
      with.link.CtClose();
      break;
    case ctapi::code::HostError:
      entry.ScanResult = code;
      entry.PortText = u"Wird vom System benutzt!";
      entry.AvailText = u"";
      entry.PortPresent = true;
      break;
    case ctapi::code::TransmissionError:
      entry.PortText = AvailableTried;
      with.info.ModelName = u"Modell nicht bekannt!";
      break;
    default:
      entry.ScanResult = scan_result::NoTerminal;
      entry.PortText = AvailableFree;
      entry.AvailText = u"";
  }
}

void CheckComPort(Port port, const PortCheckTarget& with) {
  with.eventLoop.Yield();
  bool lineState = false;
  const SerialTest test = TestSerialPort(port, with.serial, with.eventLoop, lineState);
  with.eventLoop.Yield();
  with.port.LineState = lineState;
  if (test != SerialTest::Opened) return MarkUnusable(test, with.port);
  if (!with.goesOn()) return;

  const CtCode code = ProbeAndOpen(port, with);
  if (lineState) {
    CheckWithLineSignal(port, code, with);
  } else {
    CheckWithoutLineSignal(port, code, with);
  }
}

}  // namespace

void CheckPort(Port port, const PortCheckTarget& target) {
  ClearForCheck(target);
  if (port.IsTested()) {
    CheckComPort(port, target);
  } else {
    CheckFurtherPort(port, target);
    if (target.port.PortText.IsBlank()) target.port.PortText = port.Line();
  }
}

}  // namespace kartocheck
