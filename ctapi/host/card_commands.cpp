#include "host/card_commands.h"

#include <algorithm>
#include <array>

namespace ctapi::host {

namespace {

constexpr std::size_t HeaderLength = 4;
constexpr std::size_t LcAt = 4;
constexpr std::size_t StatusLength = 2;

constexpr std::uint8_t InsSelect = 0xA4;
constexpr std::uint8_t InsReadBinary = 0xB0;
constexpr std::uint8_t InsGetResponse = 0xC0;
constexpr std::uint8_t MemoryClass = 0xFF;
constexpr std::uint8_t SelectByName = 0x04;

// The first status byte by which a T=0 card asks for another command.
constexpr std::uint8_t MoreData = 0x61;
constexpr std::uint8_t OtherLength = 0x6C;
constexpr int MostSteps = 1000;
constexpr std::size_t LongestAnswer = 65535;

// A KVK holds 256 bytes: header, manufacturer's data and directory, and from byte 30 on the data.
constexpr std::size_t MemoryLength = 256;
constexpr std::size_t DataAt = 30;

using Header = std::array<std::uint8_t, 4>;
constexpr std::array<Header, 2> MemoryHeaders{{{0xA2, 0x13, 0x10, 0x91}, {0x92, 0x23, 0x10, 0x91}}};
constexpr std::array<std::uint8_t, 6> KvkIdentifier{0xD2, 0x76, 0x00, 0x00, 0x01, 0x01};

bool BeginsWithHeader(ByteView bytes) {
  return std::any_of(MemoryHeaders.begin(), MemoryHeaders.end(), [bytes](const Header& header) {
    return bytes.size() >= header.size() && std::equal(header.begin(), header.end(), bytes.begin());
  });
}

bool EndsWith(ByteView answer, std::uint16_t word) {
  const Bytes end = StatusWord(word);
  return std::equal(end.rbegin(), end.rend(), answer.rbegin());
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
    if (answer.size() < StatusLength) return PcscResult::Ok;
    const std::uint8_t first = answer[answer.size() - 2];
    const std::uint8_t second = answer.back();
    if (first == OtherLength && next.size() == HeaderLength + 1 && !isCorrected) {
      next[LcAt] = second;
      isCorrected = true;
      continue;
    }
    const bool hasMore = first == MoreData && command.size() > HeaderLength;
    const std::size_t length = answer.size() - (hasMore ? StatusLength : 0);
    if (hasMore && isGetResponse && length == 0) break;
    data.insert(data.end(), answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(length));
    if (!hasMore) {
      answer = std::move(data);
      return PcscResult::Ok;
    }
    next = {command[0], InsGetResponse, 0x00, 0x00, second};
    isGetResponse = true;
    isCorrected = false;
  }
  answer.clear();
  return data.size() > LongestAnswer ? PcscResult::TooLong : PcscResult::Broken;
}

}  // namespace

Bytes StatusWord(std::uint16_t word) {
  return {static_cast<std::uint8_t>(word >> 8), static_cast<std::uint8_t>(word & 0xFF)};
}

PcscResult SendToProcessorCard(CardConnection& card, ByteView command, Bytes& answer) {
  if (card.UsesT0() && command.size() >= HeaderLength) return SendOverT0(card, command, answer);
  return card.Transmit(command, answer);
}

bool IsMemoryCard(ByteView atr) {
  constexpr std::uint8_t DirectConvention = 0x3B;
  constexpr std::uint8_t FourHistoricalBytes = 0x04;
  return atr.size() == 2 + std::tuple_size_v<Header> && atr[0] == DirectConvention &&
         atr[1] == FourHistoricalBytes && BeginsWithHeader(atr.subspan(2));
}

PcscResult KvkMemory::Send(CardConnection& card, ByteView command, Bytes& answer) {
  const auto reply = [&answer](std::uint16_t word) {
    answer = StatusWord(word);
    return PcscResult::Ok;
  };
  if (command.size() < HeaderLength) return reply(0x6700);
  if (command[0] != 0x00) return reply(0x6E00);
  if (command[1] == InsSelect) return Select(card, command, answer);
  if (command[1] != InsReadBinary) return reply(0x6D00);
  if (command.size() != HeaderLength + 1) return reply(0x6700);
  if (!isSelected_) return reply(0x6986);

  const std::size_t offset = start_ + (static_cast<std::size_t>(command[2]) << 8 | command[3]);
  if (offset >= MemoryLength) return reply(0x6B00);
  const std::size_t wanted = command[LcAt] == 0 ? MemoryLength : command[LcAt];
  const std::size_t length = std::min(wanted, MemoryLength - offset);
  const std::array<std::uint8_t, 5> read{MemoryClass, InsReadBinary, 0x00,
                                         static_cast<std::uint8_t>(offset),
                                         static_cast<std::uint8_t>(length)};
  return card.Transmit(read, answer);
}

PcscResult KvkMemory::Select(CardConnection& card, ByteView command, Bytes& answer) {
  isSelected_ = false;
  const bool byName = command[2] == SelectByName && command.size() > LcAt;
  const ByteView name = byName ? command.subspan(LcAt + 1) : ByteView();
  const bool namesKvk = name.size() >= KvkIdentifier.size() &&
                        command[LcAt] == KvkIdentifier.size() &&
                        std::equal(KvkIdentifier.begin(), KvkIdentifier.end(), name.begin());
  const std::array<std::uint8_t, 5> readDirectory{MemoryClass, InsReadBinary, 0x00, 0x00,
                                                  static_cast<std::uint8_t>(DataAt)};
  const PcscResult result = card.Transmit(readDirectory, answer);
  if (result != PcscResult::Ok || answer.size() < StatusLength) return result;
  const bool isRead = EndsWith(answer, 0x9000) || EndsWith(answer, 0x6282);
  // A reader that leaves out the header delivers the data from the first byte on.
  const bool wholeMemory = BeginsWithHeader(answer);
  const bool holdsKvk =
      !wholeMemory || std::search(answer.begin(), answer.end(), KvkIdentifier.begin(),
                                  KvkIdentifier.end()) != answer.end();
  start_ = wholeMemory ? DataAt : 0;
  isSelected_ = isRead && namesKvk && holdsKvk;
  answer = StatusWord(isSelected_ ? 0x9000 : 0x6A82);
  return PcscResult::Ok;
}

}  // namespace ctapi::host
