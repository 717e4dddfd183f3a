#include <gtest/gtest.h>

#include "host/serial_link.h"
#include "host/virtual_line.h"

// What a serial link reports of its line, in the time of the tests' own lines.
namespace ctapi::host {
namespace {

using ctapi::test::BlockTerminal;
using std::chrono::milliseconds;
using test::ScriptedLine;
using test::TerminalLine;
using test::VirtualLine;

// A link closes its line; the test looks at it afterwards.
class LentLine final : public LinePort {
 public:
  explicit LentLine(LinePort& line) : line_(line) {}
  void Send(ByteView bytes) override { line_.Send(bytes); }
  Reception Receive(milliseconds longest) override { return line_.Receive(longest); }
  void DiscardInput() override { line_.DiscardInput(); }
  void SetBaud(std::int32_t baud) override { line_.SetBaud(baud); }

 private:
  LinePort& line_;
};

OpenedLink OpenOn(LinePort& line) {
  return SerialLink::Open(std::make_unique<LentLine>(line));
}

TEST(SerialLinkCodes, ASilentLineIsRefusedWithinASecondAndAHalf) {
  VirtualLine line;
  EXPECT_EQ(OpenOn(line).Code, code::TransmissionError);
  EXPECT_EQ(line.Sent, std::vector<std::string>(5, "12C000D2"));
  EXPECT_EQ(line.Bauds, (std::vector<std::int32_t>{9600, 19200, 38400, 57600, 115200}));
  EXPECT_EQ(line.Waits, std::vector<milliseconds>(5, milliseconds(250)));
  EXPECT_LE(line.Elapsed, milliseconds(1500));
}

TEST(SerialLinkCodes, ATerminalThatFallsSilentBehindTheSearchIsRefused) {
  ScriptedLine line({{"12C000D2", "21E000C1"},
                     {"12C101FE2C", ""},
                     {"12C101FE2C", ""},
                     {"12C101FE2C", ""},
                     {"12C000D2", ""},
                     {"12C000D2", ""},
                     {"12C000D2", ""}});
  EXPECT_EQ(OpenOn(line).Code, code::TransmissionError);
}

TEST(SerialLinkCodes, ALineThatIsLostWhileItIsOpenedIsRefused) {
  VirtualLine line;
  line.Unplugged = true;
  OpenedLink opened;
  ASSERT_NO_THROW(opened = OpenOn(line));
  EXPECT_EQ(opened.Code, code::TransmissionError);
  EXPECT_EQ(opened.Link, nullptr);
}

TEST(SerialLinkCodes, ALineThatIsLostLaterStaysLost) {
  BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; });
  TerminalLine line(terminal);
  const OpenedLink opened = OpenOn(line);
  ASSERT_EQ(opened.Code, code::Success);
  Bytes response;
  ASSERT_EQ(opened.Link->Exchange(Unit::Card, Bytes{0x00, 0xB0, 0x00, 0x00}, response),
            code::Success);
  line.Unplugged = true;
  EXPECT_EQ(opened.Link->Exchange(Unit::Card, Bytes{0x00, 0xB0, 0x00, 0x00}, response),
            code::TransmissionError);
  EXPECT_EQ(response, Bytes{});
  line.Unplugged = false;
  EXPECT_EQ(opened.Link->Exchange(Unit::Card, Bytes{0x00, 0xB0, 0x00, 0x00}, response),
            code::HtsiError);
}

// The C interface counts a response's bytes in 16 bits.
TEST(SerialLinkCodes, AResponseLongerThanCanBeToldIsTooLong) {
  std::size_t length = 65'536;
  BlockTerminal terminal([&length](int, const Bytes&) { return Bytes(length, 0x90); });
  TerminalLine line(terminal);
  const OpenedLink opened = OpenOn(line);
  ASSERT_EQ(opened.Code, code::Success);
  Bytes response;
  EXPECT_EQ(opened.Link->Exchange(Unit::Card, Bytes{0x00, 0xB0, 0x00, 0x00}, response),
            code::BufferTooSmall);
  EXPECT_EQ(response, Bytes{});
  EXPECT_EQ(terminal.Executed().size(), 1U) << "sent once";
  length = 65'535;
  EXPECT_EQ(opened.Link->Exchange(Unit::Card, Bytes{0x00, 0xB0, 0x00, 0x00}, response),
            code::Success);
  EXPECT_EQ(response.size(), length);
}

}  // namespace
}  // namespace ctapi::host
