#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <thread>

#include "protocol/bytes.h"

// The PC/SC client library (PC/SC Workgroup, part 5) as this layer uses it, in types of its own:
// those of the systems differ in width, calling convention and characters.
namespace ctapi::host {

// What a call returns. The numbers are those that the systems agree in; what they tell otherwise is
// translated where the library is called.
enum class PcscCode : std::uint32_t {
  Success = 0,
  InternalError = 0x8010'0001,
  InvalidHandle = 0x8010'0003,
  InvalidParameter = 0x8010'0004,
  InsufficientBuffer = 0x8010'0008,
  UnknownReader = 0x8010'0009,
  Timeout = 0x8010'000A,
  SharingViolation = 0x8010'000B,
  NoSmartcard = 0x8010'000C,
  ProtocolMismatch = 0x8010'000F,
  NotReady = 0x8010'0010,
  InvalidValue = 0x8010'0011,
  CommunicationError = 0x8010'0013,
  UnknownError = 0x8010'0014,
  NotTransacted = 0x8010'0016,
  ReaderUnavailable = 0x8010'0017,
  CardUnsupported = 0x8010'001C,
  NoService = 0x8010'001D,
  ServiceStopped = 0x8010'001E,
  UnsupportedFeature = 0x8010'0022,
  NoAccess = 0x8010'0027,
  NoReadersAvailable = 0x8010'002E,
  ServerTooBusy = 0x8010'0031,
  UnsupportedCard = 0x8010'0065,
  UnresponsiveCard = 0x8010'0066,
  UnpoweredCard = 0x8010'0067,
  ResetCard = 0x8010'0068,
  RemovedCard = 0x8010'0069,
  SecurityViolation = 0x8010'006A,
};

using PcscContext = std::uintptr_t;
using PcscCard = std::uintptr_t;

enum class CardSharing : std::uint32_t { Exclusive = 1, Shared = 2, Direct = 3 };
enum class CardDisposition : std::uint32_t { Leave = 0, Reset = 1, Unpower = 2 };

// Protocols of cards (ISO 7816-3), which may be combined.
namespace card_protocol {

inline constexpr std::uint32_t None = 0;
inline constexpr std::uint32_t T0 = 1;
inline constexpr std::uint32_t T1 = 2;

}  // namespace card_protocol

// What a reader's state is made of. The upper 16 bits count how often a card came or went.
namespace reader_state {

inline constexpr std::uint32_t Unaware = 0;  // as the known state: nothing is known
inline constexpr std::uint32_t Ignore = 0x0001;
inline constexpr std::uint32_t Changed = 0x0002;
inline constexpr std::uint32_t Unknown = 0x0004;
inline constexpr std::uint32_t Unavailable = 0x0008;
inline constexpr std::uint32_t Empty = 0x0010;
inline constexpr std::uint32_t Present = 0x0020;
inline constexpr std::uint32_t Exclusive = 0x0080;
inline constexpr std::uint32_t InUse = 0x0100;
inline constexpr std::uint32_t Mute = 0x0200;

}  // namespace reader_state

// The version of a reader's driver, a number of four bytes.
inline constexpr std::uint32_t DriverVersionAttribute = 0x0001'0102;

struct ReaderStatus {
  std::string Reader{};
  std::uint32_t Known = reader_state::Unaware;
  std::uint32_t Now = reader_state::Unaware;  // out
  Bytes Atr{};                                // out; the card's answer to reset
};

// The functions of the client library, and the clock that its waits are measured with. Names are
// UTF-8.
struct PcscApi {
  std::function<PcscCode(PcscContext& context)> EstablishContext;
  std::function<PcscCode(PcscContext context)> ReleaseContext;
  // Names one behind the other, each ended by a zero, the last by two. length: out, of all; also
  // where they do not fit (InsufficientBuffer).
  std::function<PcscCode(PcscContext context, std::span<char> names, std::uint32_t& length)>
      ListReaders;
  // Waits until the state is another than the known one.
  std::function<PcscCode(PcscContext context, std::uint32_t milliseconds, ReaderStatus& status)>
      GetStatusChange;
  std::function<PcscCode(PcscContext context, const std::string& reader, CardSharing sharing,
                         std::uint32_t protocols, PcscCard& card, std::uint32_t& protocol)>
      Connect;
  std::function<PcscCode(PcscCard card, CardDisposition disposition)> Disconnect;
  // length: out, of the answer.
  std::function<PcscCode(PcscCard card, std::uint32_t protocol, ByteView command,
                         std::span<std::uint8_t> answer, std::uint32_t& length)>
      Transmit;
  std::function<PcscCode(PcscCard card, std::uint32_t attribute, std::span<std::uint8_t> value,
                         std::uint32_t& length)>
      GetAttrib;
  std::function<std::chrono::steady_clock::time_point()> Now = std::chrono::steady_clock::now;
  std::function<void(std::chrono::milliseconds time)> Pause = [](std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
  };
};

// The system's client library, loaded now; nothing where it is not installed. Where it would try
// again for ever, as long as another program holds a card, it tells the sharing violation instead.
[[nodiscard]] std::optional<PcscApi> LoadPcscApi();

}  // namespace ctapi::host
