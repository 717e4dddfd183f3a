#include "terminal/guarded_buffer.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace kartocheck::test {
namespace {

TEST(GuardedBufferTest, HasTheSizeAskedForAndStartsIntact) {
  GuardedBuffer buffer(100);
  EXPECT_EQ(buffer.Bytes().size(), 100U);
  EXPECT_TRUE(buffer.IsIntact());
}

TEST(GuardedBufferTest, AllBytesOfTheBufferMayChange) {
  GuardedBuffer buffer(100);
  std::fill(buffer.Bytes().begin(), buffer.Bytes().end(), std::uint8_t{0});
  EXPECT_TRUE(buffer.IsIntact());
}

TEST(GuardedBufferTest, ClearForgetsTheBufferButNotADamage) {
  GuardedBuffer buffer(100);
  const std::vector<std::uint8_t> fresh(buffer.Bytes().begin(), buffer.Bytes().end());
  std::fill(buffer.Bytes().begin(), buffer.Bytes().end(), std::uint8_t{1});
  buffer.Clear();
  EXPECT_TRUE(std::equal(fresh.begin(), fresh.end(), buffer.Bytes().begin()));
  EXPECT_TRUE(buffer.IsIntact());
  buffer.Bytes().data()[100] = 1;
  buffer.Clear();
  EXPECT_FALSE(buffer.IsIntact());
}

TEST(GuardedBufferTest, EveryByteBehindIsWatched) {
  for (std::size_t offset = 100; offset < 65'535; offset += offset < 200 ? 1 : 997) {
    GuardedBuffer buffer(100);
    buffer.Bytes().data()[offset] = 1;
    EXPECT_FALSE(buffer.IsIntact()) << offset;
  }
}

TEST(GuardedBufferTest, AGuardFilledWithOneValueIsSeen) {
  for (const int value : {0x00, 0xFF, 0x5A}) {
    GuardedBuffer buffer(100);
    std::fill_n(buffer.Bytes().data(), 65'535, static_cast<std::uint8_t>(value));
    EXPECT_FALSE(buffer.IsIntact()) << value;
  }
}

TEST(GuardedBufferTest, TheLargestBufferHasAGuardToo) {
  GuardedBuffer buffer(65'535);
  EXPECT_TRUE(buffer.IsIntact());
  buffer.Bytes().data()[65'535] = 1;
  EXPECT_FALSE(buffer.IsIntact());
}

}  // namespace
}  // namespace kartocheck::test
