#include "host/serial_transport.h"

#include <cstdlib>
#include <gtest/gtest.h>

#include "host/pty_terminal.h"

namespace ctapi::host {
namespace {

using ctapi::test::PtyTerminal;
using std::chrono::milliseconds;

constexpr std::size_t Com1 = 0;
constexpr std::size_t Com3 = 2;
constexpr std::size_t Com256 = 255;

// A terminal that carries out every command.
class AnyTerminal : public PtyTerminal {
 public:
  explicit AnyTerminal(Line line = {})
      : PtyTerminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; }, std::move(line)) {}
};

class SerialTransportTest : public testing::Test {
 protected:
  SerialTransportTest() { HandOverNoTable(); }
  ~SerialTransportTest() override { HandOverNoTable(); }

  static void HandOver(const std::string& table) { setenv(ComTableVariable, table.c_str(), 1); }
  static void HandOverNoTable() { unsetenv(ComTableVariable); }

  std::vector<ComDevice> devices_;  // of the machine
  int looks_ = 0;                   // for them
  std::chrono::steady_clock::time_point now_{};
  SerialTransport transport_{[this] {
                               ++looks_;
                               return devices_;
                             },
                             [this] { return now_; }};
};

TEST_F(SerialTransportTest, ASilentDeviceIsRefused) {
  const AnyTerminal terminal({.IsSilent = true});
  HandOver("3=" + terminal.Device());
  EXPECT_EQ(transport_.Open(Com3).Code, code::TransmissionError);
}

TEST_F(SerialTransportTest, PortsThatAreNotInTheTableAreRefused) {
  const AnyTerminal terminal;
  HandOver("3=" + terminal.Device());
  EXPECT_EQ(transport_.Open(Com1).Code, code::InvalidParameter);
  EXPECT_EQ(transport_.Open(Com256).Code, code::InvalidParameter);
}

TEST_F(SerialTransportTest, TellsWhyADeviceCannotBeOpened) {
  const AnyTerminal terminal;
  HandOver("1=/dev/does_not_exist;3=" + terminal.Device());
  EXPECT_EQ(transport_.Open(Com1).Code, code::InvalidParameter);
  const OpenedLink first = transport_.Open(Com3);
  EXPECT_EQ(first.Code, code::Success);
  EXPECT_EQ(transport_.Open(Com3).Code, code::HostError);
}

TEST_F(SerialTransportTest, FollowsTheEnvironment) {
  const AnyTerminal terminal;
  HandOver("");
  EXPECT_EQ(transport_.Open(Com3).Code, code::InvalidParameter);
  HandOver("3=" + terminal.Device());
  EXPECT_EQ(transport_.Open(Com3).Code, code::Success);
  HandOver("1=/dev/null");
  EXPECT_EQ(transport_.Open(Com3).Code, code::InvalidParameter);
}

TEST_F(SerialTransportTest, WorksTheTableOutWhereNoneIsHandedOver) {
  const AnyTerminal terminal;
  devices_ = {{.Path = terminal.Device(), .Identification = "USB VID_0403 PID_6001"},
              {.Path = "/dev/does_not_exist", .BuiltInNumber = 1},
              {.Path = "/dev/does_not_exist", .BuiltInNumber = 2}};
  EXPECT_EQ(transport_.Open(Com1).Code, code::InvalidParameter);
  EXPECT_EQ(transport_.Open(Com3).Code, code::Success);
  EXPECT_EQ(transport_.Open(Com256).Code, code::InvalidParameter);
}

// Even where it is an empty one: the program knows that there are no ports.
TEST_F(SerialTransportTest, LooksForNoDevicesWhereATableIsHandedOver) {
  devices_ = {{.Path = "/dev/does_not_exist", .BuiltInNumber = 1}};
  HandOver("");
  EXPECT_EQ(transport_.Open(Com1).Code, code::InvalidParameter);
  EXPECT_EQ(looks_, 0);
}

TEST_F(SerialTransportTest, LooksForDevicesOnceInASweepAndAgainAfterASecond) {
  for (std::size_t index = Com1; index <= Com256; ++index) {
    EXPECT_EQ(transport_.Open(index).Code, code::InvalidParameter);
    now_ += milliseconds(2);
  }
  EXPECT_EQ(looks_, 1);
  const AnyTerminal terminal;
  devices_ = {{.Path = terminal.Device(), .Identification = "USB VID_0403 PID_6001"}};
  EXPECT_EQ(transport_.Open(Com1).Code, code::InvalidParameter);
  now_ += milliseconds(1001);
  EXPECT_EQ(transport_.Open(Com1).Code, code::Success);
  EXPECT_EQ(looks_, 2);
}

TEST_F(SerialTransportTest, LeavesAndTakesUpTheTableOfTheEnvironment) {
  const AnyTerminal terminal;
  const std::string table = "3=" + terminal.Device();
  devices_ = {{.Path = terminal.Device(), .BuiltInNumber = 1}};
  HandOver(table);
  EXPECT_EQ(transport_.Open(Com3).Code, code::Success);
  HandOverNoTable();
  EXPECT_EQ(transport_.Open(Com3).Code, code::InvalidParameter);
  EXPECT_EQ(transport_.Open(Com1).Code, code::Success);
  HandOver(table);
  EXPECT_EQ(transport_.Open(Com1).Code, code::InvalidParameter);
  EXPECT_EQ(transport_.Open(Com3).Code, code::Success);
  // Within the second in which the devices are not looked for again in a sweep.
  HandOverNoTable();
  EXPECT_EQ(transport_.Open(Com3).Code, code::InvalidParameter);
  EXPECT_EQ(transport_.Open(Com1).Code, code::Success);
}

}  // namespace
}  // namespace ctapi::host
