#include "simulator/simulated_terminal.h"

#include <utility>

#include "protocol/ct_bcs.h"

namespace ctapi {

namespace {

void PowerUp(CardImage& card) {
  std::visit([](auto& image) { image.Reset(); }, card);
}

StatusWord WordOf(const CardImage& card) {
  return std::holds_alternative<KvkCard>(card) ? sw::Ok : sw::OkProcessorCard;
}

Bytes AtrOf(const CardImage& card) {
  return std::visit([](const auto& image) { return image.Atr(); }, card);
}

}  // namespace

SimulatedTerminal::SimulatedTerminal(TerminalProfile profile, TerminalState state)
    : profile_(std::move(profile)), state_(state) {}

void SimulatedTerminal::Insert(CardImage card) {
  if (active_ == Presented::Card) active_ = Presented::Nothing;
  card_ = std::move(card);
}

void SimulatedTerminal::RemoveCard() {
  if (active_ == Presented::Card) active_ = Presented::Nothing;
  card_.reset();
}

void SimulatedTerminal::Store(CardImage record) {
  records_.push_back(std::move(record));
}

Bytes SimulatedTerminal::TransmitToTerminal(ByteView bytes) {
  const auto command = ParseCommand(bytes);
  if (!command) return Answer(sw::WrongLength);
  if (command->Cla != ct_bcs::TerminalClass) return Answer(sw::UnknownClass);
  switch (command->Ins) {
    case ct_bcs::InsReset:
      return Reset(*command);
    case ct_bcs::InsRequestIcc:
      return RequestIcc(*command);
    case ct_bcs::InsGetStatus:
      return GetStatus(*command);
    case ct_bcs::InsEjectIcc:
      return EjectIcc(*command);
    case ct_bcs::InsConnectionQuery:
      return AnswerToUsbQuery(*command);
    default:
      return Answer(sw::UnknownInstruction);
  }
}

Bytes SimulatedTerminal::TransmitToCard(ByteView bytes) {
  if (const auto command = ParseCommand(bytes)) {
    if (const auto refusal = RefusalOf(*command)) return Answer(*refusal);
    if (active_ == Presented::Record && command->Ins == iso7816::InsEraseBinary)
      return EraseRecord();
  }
  CardImage* const card = ActiveCard();
  if (card == nullptr) return Answer(sw::NoDiagnosis);
  return std::visit([bytes](auto& image) { return image.Transmit(bytes); }, *card);
}

Bytes SimulatedTerminal::Reset(const Command& command) {
  if (command.P1 == ct_bcs::UnitTerminal) {
    active_ = Presented::Nothing;
    return Answer(profile_.Reset);
  }
  if (command.P1 != ct_bcs::UnitSlot1) return Answer(sw::WrongParameters);
  if (state_.Mode == Condition::MenuActive || state_.Mode == Condition::Locked) {
    return Answer(sw::NotAllowed);
  }
  if (WhatThereIs() == Presented::Nothing) return Answer(sw::ResetFailed);
  return Activate(command);
}

Bytes SimulatedTerminal::RequestIcc(const Command& command) {
  if (command.P1 != ct_bcs::UnitSlot1) return Answer(sw::WrongParameters);
  switch (state_.Mode) {
    case Condition::MenuActive:
    case Condition::Locked:
      return Answer(sw::NotAllowed);
    case Condition::LockedSilently:
      return Answer(sw::NoCard);
    case Condition::Ready:
      break;
  }
  if (active_ == Presented::Card) return Answer(sw::CardAlreadyPresent);
  if (WhatThereIs() == Presented::Nothing) return Answer(sw::NoCard);
  return Activate(command);
}

Bytes SimulatedTerminal::Activate(const Command& command) {
  const std::uint8_t wanted = command.P2 & 0x0F;
  if (wanted != ct_bcs::NoCardData && wanted != ct_bcs::WholeAtr)
    return Answer(sw::WrongParameters);
  active_ = WhatThereIs();
  CardImage& card = *ActiveCard();
  PowerUp(card);
  return Answer(wanted == ct_bcs::WholeAtr ? AtrOf(card) : Bytes{}, WordOf(card));
}

Bytes SimulatedTerminal::GetStatus(const Command& command) const {
  if (command.P1 != ct_bcs::UnitTerminal) return Answer(sw::WrongParameters);
  switch (command.P2) {
    case ct_bcs::ObjectManufacturer:
      return profile_.AnswerToManufacturerQuery();
    case ct_bcs::ObjectCardStatus: {
      const std::uint8_t idle =
          WhatThereIs() == Presented::Nothing ? ct_bcs::CardAbsent : ct_bcs::CardPresent;
      const Bytes status{ct_bcs::ObjectCardStatus, 1,
                         active_ == Presented::Nothing ? idle : ct_bcs::CardConnected};
      return Answer(status, sw::Ok);
    }
    case ct_bcs::ObjectFunctionalUnits: {
      if (profile_.FunctionalUnits != sw::Ok) return Answer(profile_.FunctionalUnits);
      const Bytes units{ct_bcs::ObjectFunctionalUnits, 1, ct_bcs::UnitSlot1};
      return Answer(units, sw::Ok);
    }
    default:
      return Answer(sw::WrongParameters);
  }
}

// The slot has no motor: with a waiting time the terminal waits in vain for the card to be taken.
Bytes SimulatedTerminal::EjectIcc(const Command& command) {
  if (command.P1 != ct_bcs::UnitSlot1) return Answer(sw::WrongParameters);
  const bool cardStays = active_ != Presented::Record && card_.has_value();
  const bool waits = !command.Data.empty() && command.Data.front() != 0;
  active_ = Presented::Nothing;
  return Answer(cardStays && waits ? sw::NoCard : sw::Ok);
}

// Vendor query: the USB device descriptor of the attachment. The lower byte of the product number
// is 02 for a virtual COM port.
Bytes SimulatedTerminal::AnswerToUsbQuery(const Command& command) const {
  constexpr std::uint16_t DescriptorOfAttachment = 0x0001;
  if (profile_.Usb == UsbQuery::Unknown) return Answer(sw::UnknownInstruction);
  if (command.Parameters() != DescriptorOfAttachment) return Answer(sw::WrongParameters);
  const bool virtualCom = profile_.Usb == UsbQuery::VirtualCom;
  const Bytes descriptor{0x12,
                         0x01,  // length, kind: device
                         0x00,
                         0x02,  // USB 2.00
                         0x02,
                         0x00,  // class: communication, no subclass
                         0x00,
                         0x40,  // no protocol, packets of 64 bytes
                         0xFE,
                         0xFF,  // vendor: none that exists
                         virtualCom ? std::uint8_t{0x02} : std::uint8_t{0x01},
                         0x00,  // product
                         0x00,
                         0x01,  // release 1.00
                         0x01,
                         0x02,  // texts
                         0x00,
                         0x01};  // no serial number, one configuration
  return Answer(descriptor, sw::Ok);
}

SimulatedTerminal::Presented SimulatedTerminal::WhatThereIs() const {
  if (!records_.empty()) return Presented::Record;
  return card_ ? Presented::Card : Presented::Nothing;
}

CardImage* SimulatedTerminal::ActiveCard() {
  switch (active_) {
    case Presented::Card:
      return &*card_;
    case Presented::Record:
      return &records_.front();
    case Presented::Nothing:
      break;
  }
  return nullptr;
}

std::optional<StatusWord> SimulatedTerminal::RefusalOf(const Command& command) const {
  if (command.Ins == iso7816::InsSelect) {
    if (state_.Medium == OutputMedium::DisplayPrinter) return sw::ConditionsOfUse;
    if (state_.Mode == Condition::LockedSilently || profile_.RefusesSelect) return sw::NotAllowed;
    return std::nullopt;
  }
  const bool guarded =
      command.Ins == iso7816::InsReadBinary || command.Ins == iso7816::InsEraseBinary;
  if (active_ != Presented::Record || !guarded) return std::nullopt;
  switch (state_.HealthCard) {
    case Release::NotReleased:
      return sw::ReadFailed;
    case Release::NotInserted:
      return sw::NotAllowed;
    case Release::Released:
      break;
  }
  return std::nullopt;
}

Bytes SimulatedTerminal::EraseRecord() {
  records_.pop_front();
  active_ = Presented::Nothing;
  return Answer(sw::Ok);
}

}  // namespace ctapi
