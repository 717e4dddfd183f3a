#include "host/serial_link.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>

#include "host/pty_terminal.h"
#include "host/serial_device.h"
#include "host/serial_transport.h"
#include "simulator/hex.h"
#include "simulator/simulated_terminal.h"

// A simulated terminal behind a pseudo-terminal, which the library takes for a serial port.
namespace ctapi::host {
namespace {

using ctapi::test::BlockTerminal;
using ctapi::test::LineFault;
using ctapi::test::PrintTo;
using ctapi::test::PtyTerminal;
using ctapi::test::RowName;
using ctapi::test::ToHex;
using std::chrono::milliseconds;
using Kind = LineFault::Kind;

class TerminalOnALine {
 public:
  explicit TerminalOnALine(PtyTerminal::Line line = {})
      : terminal_(*ProfileOf("gamma")),
        pty_(
            [this](int unit, const Bytes& command) {
              return unit == 1 ? terminal_.TransmitToTerminal(command)
                               : terminal_.TransmitToCard(command);
            },
            std::move(line)) {
    EgkContents contents;
    contents.Vsd.EfPd = Bytes(600, 0x3C);
    terminal_.Insert(EgkCard(contents));
    setenv(ComTableVariable, ("3=" + pty_.Device()).c_str(), 1);
  }
  ~TerminalOnALine() { unsetenv(ComTableVariable); }
  TerminalOnALine(const TerminalOnALine&) = delete;
  TerminalOnALine& operator=(const TerminalOnALine&) = delete;

  [[nodiscard]] const PtyTerminal& Pty() const { return pty_; }
  [[nodiscard]] std::ptrdiff_t Times(const char* hex) const {
    const auto done = pty_.Executed();
    return std::count(done.begin(), done.end(), *BytesFromHex(hex));
  }

 private:
  SimulatedTerminal terminal_;
  PtyTerminal pty_;
};

OpenedLink OpenCom3() {
  SerialTransport transport;
  return transport.Open(2);
}

std::string Ask(TerminalLink& link, Unit unit, const char* command) {
  Bytes response;
  const int code = link.Exchange(unit, *BytesFromHex(command), response);
  return code == 0 ? ToHex(response) : "code " + std::to_string(code);
}

// Wakes the card, selects the insured data and reads 256 bytes, in nine blocks of 32 or two of 254.
void ExpectARead(TerminalLink& link) {
  EXPECT_EQ(Ask(link, Unit::Terminal, "2013008100"), "8101019000");
  EXPECT_EQ(Ask(link, Unit::Terminal, "201201000101"), "9001");
  EXPECT_EQ(Ask(link, Unit::Card, "00A4040C06D27600000102"), "9000");
  EXPECT_EQ(Ask(link, Unit::Card, "00B0810000"), ToHex(Bytes(256, 0x3C)) + "9000");
}

TEST(SerialLink, ReadsACard) {
  const TerminalOnALine terminal;
  const OpenedLink opened = OpenCom3();
  ASSERT_EQ(opened.Code, code::Success);
  ExpectARead(*opened.Link);
}

class SerialRate : public testing::TestWithParam<std::int32_t> {};

TEST_P(SerialRate, IsFoundAndTold) {
  const TerminalOnALine terminal({.Baud = GetParam()});
  const OpenedLink opened = OpenCom3();
  ASSERT_EQ(opened.Code, code::Success);
  EXPECT_EQ(opened.Link->Baud(), GetParam());
  EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "2013008100"), "8101019000");
}

INSTANTIATE_TEST_SUITE_P(Host, SerialRate, testing::Values(9600, 19200, 38400, 57600, 115200));

struct FaultRow {
  const char* Name;
  LineFault Fault;
  BlockTerminal::Manners Manners{};
};

class SerialFault : public testing::TestWithParam<FaultRow> {};

// The fault hits the answer to REQUEST ICC, which must not be sent twice.
TEST_P(SerialFault, IsMended) {
  const TerminalOnALine terminal(
      {.Manners = GetParam().Manners, .Faults = {{3, GetParam().Fault}}});
  const OpenedLink opened = OpenCom3();
  ASSERT_EQ(opened.Code, code::Success);
  ExpectARead(*opened.Link);
  EXPECT_EQ(terminal.Times("201201000101"), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Host, SerialFault,
    testing::Values(FaultRow{"LostBlock", {Kind::Lost}}, FaultRow{"FlippedBit", {Kind::FlippedBit}},
                    FaultRow{"LateAnswer", {Kind::Late, milliseconds(1900)}},
                    FaultRow{"GarbageBefore", {Kind::GarbageBefore}},
                    FaultRow{"MoreTime", {}, {.Extensions = 3}},
                    FaultRow{"BlockSizeAskedFor", {}, {.AskForBlockSize = std::uint8_t{254}}},
                    FaultRow{
                        "OneCountForTheLine", {}, {.Counts = BlockTerminal::Numbering::PerLine}},
                    FaultRow{"NoAnswerToTheBlockSize",
                             {},
                             {.OnBlockSize = BlockTerminal::BlockSizeManner::IsSilent}}),
    RowName<FaultRow>);

// A line of which one byte comes with a wrong parity; pseudo-terminals have none.
class DamagingLine final : public LinePort {
 public:
  explicit DamagingLine(std::unique_ptr<LinePort> line) : line_(std::move(line)) {}
  void Send(ByteView bytes) override { line_->Send(bytes); }
  Reception Receive(milliseconds longest) override {
    Reception reception = line_->Receive(longest);
    if (!reception.Received.empty() && ++receptions_ == 4) reception.Damaged = true;
    return reception;
  }
  void DiscardInput() override { line_->DiscardInput(); }
  void SetBaud(std::int32_t baud) override { line_->SetBaud(baud); }

 private:
  std::unique_ptr<LinePort> line_;
  int receptions_ = 0;
};

TEST(SerialLink, MendsAWrongParity) {
  const TerminalOnALine terminal;
  OpenedLine line = OpenSerialDevice(terminal.Pty().Device());
  ASSERT_EQ(line.Code, code::Success);
  const OpenedLink opened = SerialLink::Open(std::make_unique<DamagingLine>(std::move(line.Line)));
  ASSERT_EQ(opened.Code, code::Success);
  ExpectARead(*opened.Link);
  EXPECT_EQ(terminal.Times("201201000101"), 1);
}

TEST(SerialLink, AnAbortEndsTheCommandOnly) {
  const TerminalOnALine terminal({.Manners = {.AbortsAnswers = true}});
  const OpenedLink opened = OpenCom3();
  ASSERT_EQ(opened.Code, code::Success);
  EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "2013008100"), "code -10");
  EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "2013008100"), "code -10");
  EXPECT_EQ(terminal.Times("2013008100"), 2);
}

TEST(SerialLink, AnUnpluggedTerminalIsLostUntilTheNextInit) {
  {
    const TerminalOnALine terminal({.Faults = {{2, {Kind::Unplugged}}}});
    const OpenedLink opened = OpenCom3();
    ASSERT_EQ(opened.Code, code::Success);
    EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "2013008100"), "code -10");
    EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "2013008100"), "code -128");
    EXPECT_EQ(Ask(*opened.Link, Unit::Card, "00B0000000"), "code -128");
  }
  const TerminalOnALine again;
  const OpenedLink opened = OpenCom3();
  ASSERT_EQ(opened.Code, code::Success);
  ExpectARead(*opened.Link);
}

TEST(SerialLink, AnAnswerWithoutAStatusWordIsBroken) {
  PtyTerminal pty([](int, const Bytes&) { return Bytes{0x90}; }, {});
  OpenedLine line = OpenSerialDevice(pty.Device());
  const OpenedLink opened = SerialLink::Open(std::move(line.Line));
  ASSERT_EQ(opened.Code, code::Success);
  EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "2013008100"), "code -10");
}

}  // namespace
}  // namespace ctapi::host
