#include "app/bas_mkt_test.h"

#include <algorithm>
#include <utility>

#include "diagnosis/port_hints.h"
#include "discovery/port_sweep.h"

namespace kartocheck {

Bas_MKT_Test::Bas_MKT_Test(const Surroundings& surroundings)
    : display_(surroundings.display),
      eventLoop_(surroundings.eventLoop),
      serial_(surroundings.serial),
      directory_(surroundings.directory),
      dialogs_(surroundings.dialogs, exitRequested_),
      session_({.api = surroundings.api,
                .dialogs = surroundings.dialogs,
                .lamps = lamps_,
                .eventLoop = surroundings.eventLoop,
                .ports = ports_,
                .terminate = surroundings.terminate}),
      onExitRequest_(surroundings.onExitRequest) {}

void Bas_MKT_Test::SelectSlot(int slot) {
  currentSlot_ = slot;
  selectedPort_ = PortAt(slot);
}

std::optional<Port> Bas_MKT_Test::PortAt(int slot) const {
  return slot == FurtherPortSlot ? furtherPort_ : Port(slot);
}

std::optional<Port> Bas_MKT_Test::LinkPort() const {
  return session_.Pn() == 0 ? std::nullopt : std::optional(Port(session_.Pn()));
}

void Bas_MKT_Test::UseFurtherPort(std::optional<Port> port) {
  if (currentSlot_ == FurtherPortSlot) selectedPort_ = port;
  if (furtherPort_ == port) return;
  furtherPort_ = port;
  EmptySlot(FurtherPortSlot);
}

void Bas_MKT_Test::SweepPorts(const std::function<bool(int done)>& beforePort) {
  furtherPorts_ = SweepCtApiPorts(session_, display_, beforePort);
}

void Bas_MKT_Test::RequestExit() {
  exitRequested_ = true;
  if (onExitRequest_) onExitRequest_();
}

bool Bas_MKT_Test::TakeExitRequest() {
  return std::exchange(exitRequested_, false);
}

void Bas_MKT_Test::LoadSchemas(const QStringList& directories) {
  kartocheck::LoadSchemas(validation_, directories);
}

QString Bas_MKT_Test::IdentificationOf(int slot) const {
  const std::optional<Port> port = PortAt(slot);
  return port ? IdentificationOf(*port) : QString();
}

QString Bas_MKT_Test::IdentificationOf(Port port) const {
  return directory_.IdentificationOf(port);
}

// While the link is open, it is this program that keeps others from the card.
QString Bas_MKT_Test::HintFor(Port port) const {
  if (IsLinkOpen() || terminals_[port.Slot()].DataRead) return {};
  return PortHint(directory_.TroubleOf(port));
}

QStringList Bas_MKT_Test::HintsWithoutReader() const {
  const bool hasReader = std::any_of(furtherPorts_.begin(), furtherPorts_.end(),
                                     [](Port port) { return port.IsUsb(); });
  return hasReader ? QStringList() : PortHints(directory_.TroublesWithoutReader());
}

void Bas_MKT_Test::CheckPort(Port port, Remember remember, const std::function<bool()>& goesOn) {
  const int slot = port.Slot();
  ClearSlot(slot);
  kartocheck::CheckPort(port, {.link = session_,
                               .info = terminals_[slot],
                               .port = ports_[slot],
                               .serial = serial_,
                               .eventLoop = eventLoop_,
                               .settingsOf = [this](Port asked) { return SettingsOf(asked); },
                               .goesOn = goesOn,
                               .remember = remember});
}

// What stands in brackets behind the port in the list of further ports. COM 1 to 4 are not in it.
QString Bas_MKT_Test::SettingsOf(Port port) const {
  if (std::find(furtherPorts_.begin(), furtherPorts_.end(), port) == furtherPorts_.end()) return {};
  return port.Line().section(u'(', 1).section(u')', 0, 0);
}

Readiness Bas_MKT_Test::StatusCheck(Port port) {
  return CheckStatus({session_, port, terminals_[port.Slot()], dialogs_});
}

ReadOutcome Bas_MKT_Test::ReadCardData(Port port) {
  const int slot = port.Slot();
  return kartocheck::ReadCardData({session_, port, terminals_[slot], insured_[slot], egk_[slot],
                                   validation_, dialogs_, display_, eventLoop_});
}

void Bas_MKT_Test::ClearSlot(int slot) {
  kartocheck::ClearSlot(terminals_[slot], insured_[slot], egk_[slot]);
}

void Bas_MKT_Test::EmptySlot(int slot) {
  ClearSlot(slot);
  terminals_[slot] = {};
  ports_[slot] = {};
  if (slot == FurtherPortSlot && furtherPort_) ports_[slot].PortText = furtherPort_->Line();
}

void Bas_MKT_Test::CloseLink() {
  if (session_.IsOpen()) session_.CtClose();
}

}  // namespace kartocheck
