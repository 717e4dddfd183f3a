#include "platform/simulated/ct_api_simulated.h"

#include <array>
#include <gtest/gtest.h>

#include "simulator/hex.h"

namespace kartocheck {
namespace {

TEST(CtApiSimulated, PassesEveryCallToThePractice) {
  ctapi::SimulatedPractice practice;
  ctapi::SimulatedPort port;
  port.Terminal.emplace(ctapi::ProfileOf("vedraF").value());
  port.Baud = 19200;
  practice.Attach(3, port);
  CtApiSimulated api(practice);

  EXPECT_EQ(api.Init(1, 4), -1);
  EXPECT_EQ(api.Init(1, 3), 0);
  std::int32_t baud = -1;
  EXPECT_EQ(api.GetBaudrate(1, baud), 0);
  EXPECT_EQ(baud, 19200);

  std::array<std::uint8_t, 8> response{};
  std::uint16_t length = 0;
  std::uint8_t dad = 1;
  std::uint8_t sad = 2;
  const std::array<std::uint8_t, 5> resetCt{0x20, 0x11, 0x00, 0x00, 0x00};
  EXPECT_EQ(api.Data(1, dad, sad, resetCt, response, length), 0);
  EXPECT_EQ(ctapi::test::ToHex(std::span(response).first(length)), "9500");
  EXPECT_EQ(dad, 2);
  EXPECT_EQ(sad, 1);

  EXPECT_EQ(api.Close(1), 0);
  EXPECT_EQ(api.Close(1), -1);
}

}  // namespace
}  // namespace kartocheck
