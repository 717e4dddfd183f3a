#pragma once

#include <deque>
#include <optional>
#include <variant>

#include "simulator/egk_card.h"
#include "simulator/kvk_card.h"
#include "simulator/stored_egk_record.h"
#include "simulator/terminal_profile.h"

namespace ctapi {

// A card in the slot, or a stored record that a mobile terminal presents as one.
using CardImage = std::variant<KvkCard, EgkCard, StoredEgkRecord>;

enum class OutputMedium {
  Pc,              // card data go to the PC
  DisplayPrinter,  // they go to the terminal's display or printer: SELECT is answered 6985
};

// What keeps a terminal from handing out cards and records.
enum class Condition {
  Ready,
  MenuActive,      // its settings menu is open: REQUEST ICC is answered 6900
  Locked,          // a mobile terminal is locked: REQUEST ICC is answered 6900
  LockedSilently,  // REQUEST ICC is answered 6200, and only SELECT 6900
};

// The health professional's card (HBA or SMC-B) in a mobile terminal guards its stored records.
enum class Release {
  Released,
  NotReleased,  // READ BINARY and ERASE BINARY on a record are answered 6501
  NotInserted,  // they are answered 6900
};

struct TerminalState {
  OutputMedium Medium = OutputMedium::Pc;
  Condition Mode = Condition::Ready;
  Release HealthCard = Release::Released;
};

// One card terminal with one card slot, as it answers behind any link: CT-BCS commands for itself,
// ISO 7816-4 commands for its card. Commands and responses are bytes, the status word included.
//
// Stored records are presented before a card in the slot, the oldest first. REQUEST ICC presents a
// record; ERASE BINARY deletes it, and the next REQUEST ICC presents the record behind it.
class SimulatedTerminal {
 public:
  explicit SimulatedTerminal(TerminalProfile profile, TerminalState state = {});

  // Takes the place of a card in the slot; the new one is not active yet.
  void Insert(CardImage card);
  void RemoveCard();
  void Store(CardImage record);
  [[nodiscard]] std::size_t StoredRecords() const { return records_.size(); }

  [[nodiscard]] const TerminalProfile& Profile() const { return profile_; }
  [[nodiscard]] const TerminalState& State() const { return state_; }
  void SetState(const TerminalState& state) { state_ = state; }

  [[nodiscard]] Bytes TransmitToTerminal(ByteView command);
  [[nodiscard]] Bytes TransmitToCard(ByteView command);

 private:
  enum class Presented { Nothing, Card, Record };

  [[nodiscard]] Bytes Reset(const Command& command);
  [[nodiscard]] Bytes RequestIcc(const Command& command);
  [[nodiscard]] Bytes GetStatus(const Command& command) const;
  [[nodiscard]] Bytes EjectIcc(const Command& command);
  [[nodiscard]] Bytes AnswerToUsbQuery(const Command& command) const;

  [[nodiscard]] Presented WhatThereIs() const;
  [[nodiscard]] Bytes Activate(const Command& command);
  [[nodiscard]] CardImage* ActiveCard();
  [[nodiscard]] std::optional<StatusWord> RefusalOf(const Command& command) const;
  [[nodiscard]] Bytes EraseRecord();

  TerminalProfile profile_;
  TerminalState state_;
  std::optional<CardImage> card_;
  std::deque<CardImage> records_;
  Presented active_ = Presented::Nothing;
};

}  // namespace ctapi
