#include "simulator/kvk_card.h"

#include <utility>

#include "protocol/memory_card.h"
#include "simulator/apdu.h"

namespace ctapi {

namespace {

bool SelectsKvk(const Command& command, KvkCard::Identifier identifier) {
  switch (identifier) {
    case KvkCard::Identifier::Current:
      return Names(command, iso7816::aid::Kvk);
    case KvkCard::Identifier::Old:
      return Names(command, iso7816::aid::KvkOld);
    case KvkCard::Identifier::None:
      break;
  }
  return false;
}

}  // namespace

KvkCard::KvkCard(Bytes data, Identifier identifier)
    : data_(std::move(data)), identifier_(identifier) {}

void KvkCard::Reset() {
  selected_ = false;
}

Bytes KvkCard::Transmit(ByteView bytes) {
  const auto command = ParseCommand(bytes);
  if (!command) return Answer(sw::WrongLength);
  if (command->Cla != 0) return Answer(sw::UnknownClass);

  if (SelectsApplication(*command)) {
    selected_ = SelectsKvk(*command, identifier_);
    return Answer(selected_ ? sw::Ok : sw::NotFound);
  }
  if (command->Ins == iso7816::InsSelect) return Answer(sw::IncorrectP1P2);
  if (command->Ins != iso7816::InsReadBinary) return Answer(sw::UnknownInstruction);

  if (!command->Le) return Answer(sw::WrongLength);
  if (!selected_) return Answer(sw::NoFileSelected);
  const std::size_t offset = command->Parameters();
  if (*command->Le == iso7816::BytesOfLeMaximum && offset < data_.size()) {
    return Answer(ByteView(data_).subspan(offset), sw::Ok);
  }
  return AnswerPiece(data_, offset, *command->Le);
}

Bytes KvkCard::Atr() {
  constexpr MemoryCardHeader header = MemoryCardHeaders.front();
  return {header.begin(), header.end()};
}

}  // namespace ctapi
