#include "app/bas_mkt_test.h"

#include <algorithm>

#include "diagnosis/guided_diagnosis.h"
#include "discovery/port_check.h"
#include "discovery/port_names.h"
#include "discovery/port_sweep.h"

namespace kartocheck {

Bas_MKT_Test::Bas_MKT_Test(const Surroundings& surroundings)
    : display_(surroundings.display),
      eventLoop_(surroundings.eventLoop),
      serial_(surroundings.serial),
      directory_(surroundings.directory),
      dialogs_(surroundings.dialogs, ExitRequested),
      session_({.api = surroundings.api,
                .dialogs = surroundings.dialogs,
                .display = surroundings.display,
                .eventLoop = surroundings.eventLoop,
                .ports = Ports,
                .terminate = surroundings.terminate}) {}

void Bas_MKT_Test::CheckPort(int pn) {
  const int slot = SlotOf(pn);
  ClearSlot(slot);
  kartocheck::CheckPort(pn, {.link = session_,
                             .info = Terminals[slot],
                             .port = Ports[slot],
                             .serial = serial_,
                             .display = display_,
                             .eventLoop = eventLoop_,
                             .description = PortLine(pn),
                             .settingsOf = [this](int port) { return SettingsOf(port); }});
}

// What stands in brackets behind the port in the list of further ports. COM 1 to 4 are not in it.
QString Bas_MKT_Test::SettingsOf(int pn) const {
  if (std::find(FurtherPorts.begin(), FurtherPorts.end(), pn) == FurtherPorts.end()) return {};
  return PortLine(pn).section(u'(', 1).section(u')', 0, 0);
}

void Bas_MKT_Test::SweepPorts(const std::function<bool(int done)>& beforePort) {
  FurtherPorts = SweepCtApiPorts(session_, display_, beforePort);
}

void Bas_MKT_Test::UseFurtherPort(std::optional<int> pn) {
  if (CurrentPort == FurtherPortSlot) SelectedPort = pn;
  if (FurtherPort == pn) return;
  FurtherPort = pn;
  ClearSlot(FurtherPortSlot);
  Terminals[FurtherPortSlot] = {};
  Ports[FurtherPortSlot] = {};
  if (pn) Ports[FurtherPortSlot].PortText = PortLine(*pn);
}

QString Bas_MKT_Test::IdentificationOf(int slot) const {
  if (slot < FurtherPortSlot) return directory_.IdentificationOf(slot);
  return FurtherPort ? directory_.IdentificationOf(*FurtherPort) : QString();
}

// While the link is open, it is this program that keeps others from the card.
QString Bas_MKT_Test::HintFor(int pn) const {
  if (IsLinkOpen() || Terminals[SlotOf(pn)].DataRead) return {};
  return directory_.HintFor(pn);
}

QStringList Bas_MKT_Test::HintsWithoutReader() const {
  const bool hasReader = std::any_of(FurtherPorts.begin(), FurtherPorts.end(), IsUsbPort);
  return hasReader ? QStringList() : directory_.HintsWithoutReader();
}

Readiness Bas_MKT_Test::StatusCheck(int pn) {
  return CheckStatus({session_, pn, Terminals[SlotOf(pn)], dialogs_});
}

void Bas_MKT_Test::RunGuidedDiagnosis(const std::function<void()>& checkPort,
                                      const std::function<void()>& showTerminalStatus) {
  kartocheck::RunGuidedDiagnosis({Hints, dialogs_, display_, checkPort, showTerminalStatus});
}

ReadOutcome Bas_MKT_Test::ReadCardData(int pn) {
  const int slot = SlotOf(pn);
  return kartocheck::ReadCardData({session_, pn, Terminals[slot], Insured[slot], Egk[slot],
                                   Validation, dialogs_, display_, eventLoop_});
}

void Bas_MKT_Test::ClearSlot(int slot) {
  kartocheck::ClearSlot(Terminals[slot], Insured[slot], Egk[slot]);
}

void Bas_MKT_Test::CloseLink() {
  session_.CtClose();
}

}  // namespace kartocheck
