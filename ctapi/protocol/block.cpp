#include "protocol/block.h"

#include <functional>
#include <numeric>

namespace ctapi {

namespace {

constexpr std::size_t NadAt = 0;
constexpr std::size_t PcbAt = 1;
constexpr std::size_t LengthAt = 2;
constexpr std::size_t Prologue = 3;

constexpr std::uint8_t SupervisoryBits = 0xC0;

std::uint8_t CheckOf(ByteView bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), std::uint8_t{0}, std::bit_xor<>());
}

BlockKind KindOf(std::uint8_t control) {
  if ((control & pcb::Receipt) == 0) return BlockKind::Information;
  return (control & SupervisoryBits) == SupervisoryBits ? BlockKind::Supervisory
                                                        : BlockKind::Receipt;
}

bool IsKnownControl(std::uint8_t control) {
  switch (KindOf(control)) {
    case BlockKind::Information:
      return (control & ~(pcb::SendNumber | pcb::More)) == 0;
    case BlockKind::Receipt: {
      const int rest = control & ~(pcb::Receipt | pcb::ReceiveNumber);
      return rest <= static_cast<int>(BlockError::Other);
    }
    case BlockKind::Supervisory: {
      const int request = control & ~pcb::Response;
      return request >= pcb::Resynch && request <= pcb::WaitingTime;
    }
  }
  return false;
}

bool GoesWith(std::uint8_t control, std::size_t length) {
  switch (KindOf(control)) {
    case BlockKind::Information:
      return length <= LargestInformation;
    case BlockKind::Receipt:
      return length == 0;
    case BlockKind::Supervisory: {
      const int request = control & ~pcb::Response;
      const bool carriesValue = request == pcb::InformationSize || request == pcb::WaitingTime;
      return length == (carriesValue ? 1U : 0U);
    }
  }
  return false;
}

constexpr FramedBlock Invalid(BlockError error) {
  return {.State = Framing::Invalid, .Error = error};
}

}  // namespace

BlockKind Block::Kind() const {
  return KindOf(Pcb);
}

bool Block::Number() const {
  return (Pcb & (Kind() == BlockKind::Receipt ? pcb::ReceiveNumber : pcb::SendNumber)) != 0;
}

Bytes Encode(const Block& block) {
  Bytes bytes;
  bytes.reserve(Prologue + block.Information.size() + 1);
  bytes = {block.Nad, block.Pcb, static_cast<std::uint8_t>(block.Information.size())};
  bytes.insert(bytes.end(), block.Information.begin(), block.Information.end());
  bytes.push_back(CheckOf(bytes));
  return bytes;
}

FramedBlock ReadBlock(ByteView received) {
  if (received.size() <= NadAt) return {};
  const std::uint8_t nad = received[NadAt];
  if (nad != NadFrom(Unit::Terminal) && nad != NadFrom(Unit::Card)) {
    return Invalid(BlockError::Other);
  }
  if (received.size() <= PcbAt) return {};
  const std::uint8_t control = received[PcbAt];
  if (!IsKnownControl(control)) return Invalid(BlockError::Other);
  if (received.size() <= LengthAt) return {};
  const std::size_t length = received[LengthAt];
  if (!GoesWith(control, length)) return Invalid(BlockError::Other);
  if (received.size() < Prologue + length + 1) return {};
  if (CheckOf(received.first(Prologue + length + 1)) != 0) return Invalid(BlockError::Check);
  const ByteView information = received.subspan(Prologue, length);
  return {.State = Framing::Complete,
          .Found = {nad, control, Bytes(information.begin(), information.end())}};
}

}  // namespace ctapi
