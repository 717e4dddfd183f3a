#include "host/linux/serial_device_settings.h"

#include <gtest/gtest.h>

#include "simulator/hex.h"

namespace ctapi::host {
namespace {

using ctapi::test::PrintTo;
using ctapi::test::RowName;

struct FlagRow {
  const char* Name;
  tcflag_t termios::* Field;
  tcflag_t Mask;
  tcflag_t Expected;
};

class SerialFlag : public testing::TestWithParam<FlagRow> {
 protected:
  // What becomes of the flag in settings whose field was this before.
  [[nodiscard]] static tcflag_t Made(tcflag_t before) {
    termios settings{};
    settings.*GetParam().Field = before;
    MakeRaw8E1(settings);
    return settings.*GetParam().Field & GetParam().Mask;
  }
};

TEST_P(SerialFlag, ComesOutOfItsOpposite) {
  EXPECT_EQ(Made(~GetParam().Expected & GetParam().Mask), GetParam().Expected);
}

TEST_P(SerialFlag, ComesOutOfASettingWithEverythingOn) {
  EXPECT_EQ(Made(~tcflag_t{0}), GetParam().Expected);
}

FlagRow On(const char* name, tcflag_t termios::* field, tcflag_t flag) {
  return {name, field, flag, flag};
}

FlagRow Off(const char* name, tcflag_t termios::* field, tcflag_t flag) {
  return {name, field, flag, 0};
}

INSTANTIATE_TEST_SUITE_P(Line, SerialFlag,
                         testing::Values(FlagRow{"EightBits", &termios::c_cflag, CSIZE, CS8},
                                         On("Parity", &termios::c_cflag, PARENB),
                                         Off("EvenParity", &termios::c_cflag, PARODD),
                                         Off("NoMarkOrSpaceParity", &termios::c_cflag, CMSPAR),
                                         Off("OneStopBit", &termios::c_cflag, CSTOPB),
                                         On("NoModemLines", &termios::c_cflag, CLOCAL),
                                         On("Receiver", &termios::c_cflag, CREAD),
                                         Off("NoFlowControlByLines", &termios::c_cflag, CRTSCTS)),
                         RowName<FlagRow>);

INSTANTIATE_TEST_SUITE_P(
    Input, SerialFlag,
    testing::Values(On("ParityIsChecked", &termios::c_iflag, INPCK),
                    On("DamagedBytesAreMarked", &termios::c_iflag, PARMRK),
                    Off("DamagedBytesAreKept", &termios::c_iflag, IGNPAR),
                    // Would cut the eighth bit, and the doubling of FF with it.
                    Off("AllBits", &termios::c_iflag, ISTRIP),
                    // A break is a damaged byte too, not nothing and not a signal.
                    Off("BreakIsNotIgnored", &termios::c_iflag, IGNBRK),
                    Off("BreakIsNoSignal", &termios::c_iflag, BRKINT),
                    Off("NoFlowControlOfOutput", &termios::c_iflag, IXON),
                    Off("NoFlowControlOfInput", &termios::c_iflag, IXOFF),
                    Off("ReturnStays", &termios::c_iflag, ICRNL),
                    Off("ReturnIsKept", &termios::c_iflag, IGNCR),
                    Off("NewlineStays", &termios::c_iflag, INLCR)),
    RowName<FlagRow>);

INSTANTIATE_TEST_SUITE_P(Output, SerialFlag,
                         testing::Values(Off("BytesAsTheyAre", &termios::c_oflag, OPOST)),
                         RowName<FlagRow>);

INSTANTIATE_TEST_SUITE_P(Local, SerialFlag,
                         testing::Values(Off("NoLines", &termios::c_lflag, ICANON),
                                         Off("NoEcho", &termios::c_lflag, ECHO),
                                         Off("NoSignals", &termios::c_lflag, ISIG),
                                         Off("NoEditing", &termios::c_lflag, IEXTEN)),
                         RowName<FlagRow>);

TEST(SerialSettings, AReadWaitsForOneByteAndNoTime) {
  termios settings{};
  settings.c_cc[VMIN] = 7;
  settings.c_cc[VTIME] = 9;
  MakeRaw8E1(settings);
  EXPECT_EQ(settings.c_cc[VMIN], 1);
  EXPECT_EQ(settings.c_cc[VTIME], 0);
}

TEST(SerialSettings, KeepTheRate) {
  termios settings{};
  ASSERT_EQ(::cfsetspeed(&settings, B57600), 0);
  MakeRaw8E1(settings);
  EXPECT_EQ(::cfgetispeed(&settings), B57600);
  EXPECT_EQ(::cfgetospeed(&settings), B57600);
}

}  // namespace
}  // namespace ctapi::host
