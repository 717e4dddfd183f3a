#include "simulator/serial_line.h"

#include <gtest/gtest.h>

#include "simulator/hex.h"

namespace ctapi {
namespace {

using test::PrintTo;

using Probe = SerialLine::Probe;
using State = SerialLine::State;

constexpr const char* Resynch = "12C000D2";

struct ProbeRow {
  const char* Name;
  SerialLine Line;
  std::int32_t Baud;
  const char* Sent;
  const char* Expected;
};

class LineProbe : public testing::TestWithParam<ProbeRow> {};

TEST_P(LineProbe, IsAnswered) {
  const ProbeRow& row = GetParam();
  EXPECT_EQ(test::ToHex(row.Line.AnswerTo(row.Baud, *BytesFromHex(row.Sent))), row.Expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LineProbe,
    testing::Values(
        ProbeRow{"Right", {.Answer = Probe::Right, .Baud = 19200}, 19200, Resynch, "21E000C1"},
        ProbeRow{"AtAnotherRate", {.Answer = Probe::Right, .Baud = 19200}, 9600, Resynch, ""},
        ProbeRow{"AnotherFrame", {.Answer = Probe::Right}, 9600, "12C101FE2C", ""},
        ProbeRow{"CutFrame", {.Answer = Probe::Right}, 9600, "12C000", ""},
        ProbeRow{"FifthByte", {.Answer = Probe::FifthByte}, 9600, Resynch, "21E000C100"},
        ProbeRow{"Garbage", {.Answer = Probe::Garbage}, 9600, Resynch, "3F3F0D0A"},
        ProbeRow{"Silent", {.Answer = Probe::Silent}, 9600, Resynch, ""},
        ProbeRow{"PortInUse", {.Port = State::InUse, .Answer = Probe::Right}, 9600, Resynch, ""}),
    test::RowName<ProbeRow>);

}  // namespace
}  // namespace ctapi
