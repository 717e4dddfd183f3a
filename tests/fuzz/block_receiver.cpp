#include <algorithm>
#include <array>

#include "fuzz/fuzz_input.h"
#include "host/block_protocol.h"
#include "simulator/bytes.h"

// The host's side of the block protocol against a line that delivers the input: a byte that tells
// how many bytes come next (0: silence, bit 7: one of them is damaged), these bytes, and so on.
namespace {

using namespace ctapi;
using namespace ctapi::host;
using kartocheck::fuzz::Require;

class InputLine final : public LinePort {
 public:
  explicit InputLine(ByteView input) : rest_(input) {}

  void Send(ByteView bytes) override {
    Require(bytes.size() >= 4 && bytes.size() <= 258, "a block has 4 to 258 bytes");
    Require(bytes.size() == bytes[2] + std::size_t{4}, "a block has the length that it tells");
    Require(ctapi::XorOf(bytes) == 0, "a block carries its check byte");
  }
  Reception Receive(std::chrono::milliseconds longest) override {
    Require(longest.count() > 0, "a wait has a length");
    if (rest_.empty()) return {};
    const std::uint8_t control = rest_[0];
    const std::size_t length = std::min<std::size_t>(control & 0x7F, rest_.size() - 1);
    const ByteView piece = rest_.subspan(1, length);
    rest_ = rest_.subspan(1 + length);
    return {Bytes(piece.begin(), piece.end()), length > 0 && (control & 0x80) != 0};
  }
  // A piece without bytes in front of the rest ends what has come so far.
  void DiscardInput() override {
    if (!rest_.empty() && (rest_[0] & 0x7F) == 0) rest_ = rest_.subspan(1);
  }
  void SetBaud(std::int32_t baud) override { Require(baud > 0, "a rate is a number of bits"); }

  static constexpr std::array<std::uint8_t, 4> Erase{0x00, 0x0E, 0x00, 0x00};

 private:
  ByteView rest_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ByteView input(data, size);
  const FramedBlock framed = ReadBlock(input);
  if (framed.State == Framing::Complete) {
    const Bytes frame = Encode(framed.Found);
    Require(frame.size() <= size && std::equal(frame.begin(), frame.end(), data),
            "a block that was read is the input's beginning");
  }

  InputLine line(input);
  BlockProtocol protocol(line);
  (void)protocol.TryBaud(9600);
  const std::array<Bytes, 3> commands{Bytes{0x20, 0x13, 0x00, 0x81, 0x00}, Bytes(100, 0xB0),
                                      Bytes(InputLine::Erase.begin(), InputLine::Erase.end())};
  for (const Bytes& command : commands) {
    Bytes response;
    const Unit unit = command[0] == 0x20 ? Unit::Terminal : Unit::Card;
    const bool answered =
        protocol.Exchange(unit, command, response) == BlockProtocol::Outcome::Answered;
    Require(answered || response.empty(), "only an answer fills the response");
    Require(response.size() <= 65535, "a response has at most 65,535 bytes");
  }
  return 0;
}
