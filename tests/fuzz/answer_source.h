#pragma once

#include "fuzz/byte_source.h"
#include "fuzz/quiet_front_end.h"
#include "terminal/ct_session.h"

namespace kartocheck::fuzz {

// A library whose answers are the fuzzer's input. Each answer is a byte that says what follows:
//   00 to EF  a response of that many bytes
//   F0 + n    a response of n * 100 bytes, n up to 9
//   FA        a failing code, the next byte
//   FB        a length of 65,535 with nothing behind it
//   FC to FF  as 02
// Once the input is used up every call fails with -10.
class AnswerSource final : public CtApi {
 public:
  explicit AnswerSource(ByteSource& source) : source_(source) {}

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override;
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override;
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override;
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override;

  int opens = 0;
  int closes = 0;
  int exchanges = 0;

 private:
  ByteSource& source_;
};

// Thrown where the program would end.
struct Terminated {};

// A session over the answers.
struct FuzzedLink {
  FuzzedLink(ByteSource& source, bool agrees)
      : dialogs(agrees),
        api(source),
        session({.api = api,
                 .dialogs = dialogs,
                 .lamps = lamps,
                 .eventLoop = eventLoop,
                 .ports = ports,
                 .terminate = [](const auto&) { throw Terminated{}; }}) {}

  QuietDialogs dialogs;
  QuietDisplay display;
  Lamps lamps;
  QuietEventLoop eventLoop;
  PerSlot<PortEntry> ports;
  AnswerSource api;
  CtSession session;
};

// A port number of each kind: serial, USB, unknown.
[[nodiscard]] int PortNumber(std::uint8_t choice);

}  // namespace kartocheck::fuzz
