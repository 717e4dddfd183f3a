#include "discovery/port_check.h"

#include "discovery/serial_test.h"
#include "discovery/terminal_identification.h"
#include "terminal/reset_and_close.h"

namespace kartocheck {

namespace {

constexpr int LastTestedComPort = 4;

// The verdict with a blank at its end marks a port on which a link was tried for a line signal or
// answered with a transmission error; without it, a free port without a terminal.
constexpr QStringView AvailableTried = u"Ist verfügbar! ";
constexpr QStringView AvailableFree = u"Ist verfügbar!";

// Probes the line settings and opens the link; a link still open is ended first.
CtCode ProbeAndOpen(int pn, const PortCheckTarget& with) {
  with.port.PortPresent = true;
  with.port.PortError = false;
  with.port.SettingsFound = false;
  ProbeSerialSettings(pn, with.serial, with.eventLoop, with.port);
  if (with.link.IsOpen()) ResetAndClose(with.link);
  const CtCode code = with.link.CtOpen(pn);
  if (code == ctapi::code::Success && !with.port.SettingsFound) {
    with.port.AvailText = with.port.BaudText.Padded();
  }
  return code;
}

// A terminal that was exchanged inherits nothing. That one once answered here survives until a link
// opens: the status check's advice depends on it.
void ForgetTerminal(TerminalInfo& info) {
  const bool answered = info.Answered;
  info = {};
  info.Answered = answered;
}

void MarkUnopened(CtCode code, TerminalInfo& info) {
  ResetTerminalInfo(info);
  info.ModelName =
      code == ctapi::code::TransmissionError ? u"Modell nicht bekannt!" : u"Unbekanntes Gerät?! ";
}

void CheckFurtherPort(int pn, const PortCheckTarget& with) {
  const CtCode code = ProbeAndOpen(pn, with);
  with.port.ScanResult = code;
  if (code != ctapi::code::Success) return MarkUnopened(code, with.info);
  (void)IdentifyTerminal(with.link, pn, with.info, with.port);
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

void CheckWithLineSignal(int pn, CtCode code, const PortCheckTarget& with) {
  with.port.ScanResult = code;
  if (code != ctapi::code::Success) {
    MarkUnopened(code, with.info);
  } else {
    const Identification identified = IdentifyTerminal(with.link, pn, with.info, with.port);
    const CtCode closed = with.link.CtClose();
    const QString settings = with.settingsOf(pn);
    if (identified == Identification::Finished && closed == ctapi::code::Success &&
        !settings.isEmpty()) {
      with.info.SerialSettings = settings;
    }
  }
  with.port.PortText = AvailableTried;
}

void CheckWithoutLineSignal(int pn, CtCode code, const PortCheckTarget& with) {
  PortEntry& port = with.port;
  switch (code) {
    case ctapi::code::Success:
      port.ScanResult = scan_result::NoLineSignal;
      (void)IdentifyTerminal(with.link, pn, with.info, port);
      if (!with.info.UsbVirtualCom) {
        port.PortText = u"USB-Kabel oder falsches RS 232 Kabel/Verbinder!";
      }
      with.link.CtClose();
      break;
    case ctapi::code::HostError:
      port.ScanResult = code;
      port.PortText = u"Wird vom System benutzt!";
      port.AvailText = u"";
      port.PortPresent = true;
      break;
    case ctapi::code::TransmissionError:
      port.PortText = AvailableTried;
      with.info.ModelName = u"Modell nicht bekannt!";
      break;
    default:
      port.ScanResult = scan_result::NoTerminal;
      port.PortText = AvailableFree;
      port.AvailText = u"";
  }
}

void CheckComPort(int pn, const PortCheckTarget& with) {
  with.eventLoop.Yield();
  bool lineState = false;
  const SerialTest test = TestSerialPort(pn, with.serial, with.eventLoop, lineState);
  with.eventLoop.Yield();
  with.port.LineState = lineState;
  if (test != SerialTest::Opened) return MarkUnusable(test, with.port);

  const CtCode code = ProbeAndOpen(pn, with);
  if (lineState) {
    CheckWithLineSignal(pn, code, with);
  } else {
    CheckWithoutLineSignal(pn, code, with);
  }
}

}  // namespace

void CheckPort(int pn, const PortCheckTarget& target) {
  ForgetTerminal(target.info);
  target.port = {};
  if (pn <= LastTestedComPort) {
    CheckComPort(pn, target);
  } else {
    CheckFurtherPort(pn, target);
    if (target.port.PortText.IsBlank()) target.port.PortText = target.description;
  }
  target.display.ShowSlot(SlotOf(pn));
}

}  // namespace kartocheck
