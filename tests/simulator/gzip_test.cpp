#include "simulator/gzip.h"

#include <gtest/gtest.h>
#include <string>

#include "simulator/hex.h"
#include "simulator/inflate.h"
#include "simulator/scripted_fault.h"

namespace ctapi {
namespace {

TEST(Gzip, IsOneMemberWithAPlainHeader) {
  const Bytes member = Gzip(BytesOf("<?xml version=\"1.0\"?><a/>"));
  EXPECT_EQ(test::ToHex(ByteView(member).first(8)), "1F8B080000000000");
  EXPECT_EQ(test::Inflate(member), "<?xml version=\"1.0\"?><a/>");
}

TEST(Gzip, HoldsNothingAndMuch) {
  EXPECT_EQ(test::Inflate(Gzip({})), "");
  const Bytes incompressible = GarbageOf(100'000, 1);
  EXPECT_EQ(test::Inflate(Gzip(incompressible)),
            std::string(incompressible.begin(), incompressible.end()));
}

}  // namespace
}  // namespace ctapi
