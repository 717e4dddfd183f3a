#include "host/card_commands.h"

#include <algorithm>
#include <string_view>

#include "protocol/iso7816.h"
#include "protocol/memory_card.h"
#include "protocol/status_word.h"

namespace ctapi::host {

namespace {

constexpr std::size_t HeaderLength = 4;
constexpr std::size_t LcAt = 4;

constexpr std::uint8_t MemoryClass = 0xFF;

constexpr int MostSteps = 1000;
constexpr std::size_t LongestAnswer = 65535;

// A KVK holds 256 bytes: header, manufacturer's data and directory, and from byte 30 on the data.
constexpr std::size_t MemoryLength = 256;
constexpr std::size_t DataAt = 30;

std::string_view AsText(ByteView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool BeginsWithHeader(ByteView bytes) {
  return std::ranges::any_of(MemoryCardHeaders, [bytes](const MemoryCardHeader& header) {
    return bytes.size() >= header.size() && std::ranges::equal(bytes.first(header.size()), header);
  });
}

// The command as the protocol T=0 sends it: with a fifth byte, and without Le behind data.
Bytes ForT0(ByteView command) {
  Bytes bytes(command.begin(), command.end());
  if (bytes.size() == HeaderLength) bytes.push_back(0x00);
  if (bytes.size() > LcAt + 1 && bytes.size() == LcAt + 1 + bytes[LcAt] + 1U) bytes.pop_back();
  return bytes;
}

// Follows the card's wishes for another length, once a command, and for GET RESPONSE, as long as
// that brings data.
PcscResult SendOverT0(CardConnection& card, ByteView command, Bytes& answer) {
  Bytes next = ForT0(command);
  bool isCorrected = false;
  bool isGetResponse = false;
  Bytes data;
  for (int step = 0; step < MostSteps && data.size() <= LongestAnswer; ++step) {
    const PcscResult result = card.Transmit(next, answer);
    if (result != PcscResult::Ok) return result;
    if (answer.size() < sw::Length) return PcscResult::Ok;
    const StatusWord word = StatusWordOf(answer);
    if (word.Sw1() == sw::OtherLengthSw1 && next.size() == HeaderLength + 1 && !isCorrected) {
      next[LcAt] = word.Sw2();
      isCorrected = true;
      continue;
    }
    const bool hasMore = word.Sw1() == sw::MoreDataSw1 && command.size() > HeaderLength;
    const std::size_t length = answer.size() - (hasMore ? sw::Length : 0);
    if (hasMore && isGetResponse && length == 0) break;
    data.insert(data.end(), answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(length));
    if (!hasMore) {
      answer = std::move(data);
      return PcscResult::Ok;
    }
    next = {command[0], iso7816::InsGetResponse, 0x00, 0x00, word.Sw2()};
    isGetResponse = true;
    isCorrected = false;
  }
  answer.clear();
  return data.size() > LongestAnswer ? PcscResult::TooLong : PcscResult::Broken;
}

}  // namespace

PcscResult SendToProcessorCard(CardConnection& card, ByteView command, Bytes& answer) {
  if (card.UsesT0() && command.size() >= HeaderLength) return SendOverT0(card, command, answer);
  return card.Transmit(command, answer);
}

bool IsMemoryCard(ByteView atr) {
  constexpr std::uint8_t DirectConvention = 0x3B;
  constexpr std::uint8_t FourHistoricalBytes = 0x04;
  return atr.size() == 2 + std::tuple_size_v<MemoryCardHeader> && atr[0] == DirectConvention &&
         atr[1] == FourHistoricalBytes && BeginsWithHeader(atr.subspan(2));
}

PcscResult KvkMemory::Send(CardConnection& card, ByteView command, Bytes& answer) {
  const auto reply = [&answer](StatusWord word) {
    answer = {word.Sw1(), word.Sw2()};
    return PcscResult::Ok;
  };
  if (command.size() < HeaderLength) return reply(sw::WrongLength);
  if (command[0] != 0x00) return reply(sw::UnknownClass);
  if (command[1] == iso7816::InsSelect) return Select(card, command, answer);
  if (command[1] != iso7816::InsReadBinary) return reply(sw::UnknownInstruction);
  if (command.size() != HeaderLength + 1) return reply(sw::WrongLength);
  if (!isSelected_) return reply(sw::NoFileSelected);

  const std::size_t offset = start_ + (static_cast<std::size_t>(command[2]) << 8 | command[3]);
  if (offset >= MemoryLength) return reply(sw::WrongOffset);
  const std::size_t wanted = command[LcAt] == 0 ? MemoryLength : command[LcAt];
  const std::size_t length = std::min(wanted, MemoryLength - offset);
  const std::array<std::uint8_t, 5> read{MemoryClass, iso7816::InsReadBinary, 0x00,
                                         static_cast<std::uint8_t>(offset),
                                         static_cast<std::uint8_t>(length)};
  return card.Transmit(read, answer);
}

PcscResult KvkMemory::Select(CardConnection& card, ByteView command, Bytes& answer) {
  using iso7816::aid::Kvk;
  isSelected_ = false;
  const bool byName = command[2] == iso7816::SelectByName && command.size() > LcAt;
  const ByteView name = byName ? command.subspan(LcAt + 1) : ByteView();
  const bool namesKvk = AsText(name).starts_with(Kvk) && command[LcAt] == Kvk.size();
  const std::array<std::uint8_t, 5> readDirectory{MemoryClass, iso7816::InsReadBinary, 0x00, 0x00,
                                                  static_cast<std::uint8_t>(DataAt)};
  const PcscResult result = card.Transmit(readDirectory, answer);
  if (result != PcscResult::Ok || answer.size() < sw::Length) return result;
  const StatusWord word = StatusWordOf(answer);
  const bool isRead = word == sw::Ok || word == sw::EndOfFile;
  // A reader that leaves out the header delivers the data from the first byte on.
  const bool wholeMemory = BeginsWithHeader(answer);
  const bool holdsKvk = !wholeMemory || AsText(answer).find(Kvk) != std::string_view::npos;
  start_ = wholeMemory ? DataAt : 0;
  isSelected_ = isRead && namesKvk && holdsKvk;
  const StatusWord told = isSelected_ ? sw::Ok : sw::NotFound;
  answer = {told.Sw1(), told.Sw2()};
  return PcscResult::Ok;
}

}  // namespace ctapi::host
