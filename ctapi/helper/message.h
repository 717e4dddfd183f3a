#pragma once

#include <optional>
#include <string_view>

#include "protocol/bytes.h"

// What the program and its helper, the process that holds the CT-API library, say to each other:
// the program sends one call at a time, the helper its answer. Both ends are of the same build and
// the same machine.
namespace ctapi::helper {

enum class MessageKind : std::uint8_t {
  // Calls of the entry points.
  Init = 1,
  Data = 2,
  Close = 3,
  GetBaudrate = 4,
  PortInfo = 5,

  // The helper's first message: the library stands ready (its file in Payload), or not.
  Loaded = 0x81,
  NotLoadable = 0x82,

  // Answers to a call. After any but Returned the helper ends.
  Returned = 0x83,
  EntryPointMissing = 0x84,  // its name in Payload
  Overrun = 0x85,            // the library wrote outside its response buffer
  Threw = 0x86,              // a C++ exception left the library
};

// Why a library cannot be loaded. Payload tells the file that the trouble is with, for Other the
// system's own words.
enum class LoadTrouble : std::uint8_t {
  Other = 0,
  FileMissing = 1,
  DependencyMissing = 2,  // a further library that it needs
  NotALibrary = 3,
  WrongWordSize = 4,  // a 32-bit library for a 64-bit helper, or the reverse
};
inline constexpr auto LastLoadTrouble = LoadTrouble::WrongWordSize;

struct Message {
  MessageKind Kind = MessageKind::Returned;
  std::int8_t Code = 0;  // Returned: the library's
  std::uint8_t Dad = 0;
  std::uint8_t Sad = 0;
  std::uint8_t Trouble = 0;  // PortInfo: the library's number; NotLoadable: a LoadTrouble
  std::uint16_t Ctn = 0;
  std::uint16_t Pn = 0;
  std::uint16_t Length = 0;  // in: size of the buffer in bytes; out: the length that was told
  std::int32_t Baud = 0;
  // Command, response, name or text; at most LongestPayload bytes.
  Bytes Payload{};

  [[nodiscard]] std::string_view Text() const {
    return {reinterpret_cast<const char*>(Payload.data()), Payload.size()};
  }

  friend bool operator==(const Message&, const Message&) = default;
};

inline constexpr std::size_t HeaderLength = 17;  // bytes
inline constexpr std::size_t LongestPayload = 65'535;

[[nodiscard]] Bytes BytesOf(std::string_view text);

// The bytes of a message. A payload that is too long is cut.
[[nodiscard]] Bytes Encode(const Message& message);

// How many bytes are missing at least until `received` begins with a whole message; 0 when it does.
[[nodiscard]] std::size_t MissingBytes(ByteView received);

// The message that the bytes are, no more and no fewer. Nothing for bytes that are none.
[[nodiscard]] std::optional<Message> Decode(ByteView bytes);

}  // namespace ctapi::helper
