#include "helper/guarded_buffer.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace ctapi::helper {
namespace {

TEST(GuardedBufferTest, HasTheSizeAskedForAndStartsIntact) {
  GuardedBuffer buffer;
  for (const std::size_t size : {std::size_t{0}, std::size_t{100}, std::size_t{65'535}}) {
    EXPECT_EQ(buffer.Prepare(size).size(), size);
    EXPECT_TRUE(buffer.IsIntact()) << size;
  }
}

TEST(GuardedBufferTest, AllBytesOfTheBufferMayChange) {
  GuardedBuffer buffer;
  std::ranges::fill(buffer.Prepare(100), std::uint8_t{0});
  EXPECT_TRUE(buffer.IsIntact());
}

TEST(GuardedBufferTest, NothingOfAnEarlierUseIsInTheBuffer) {
  GuardedBuffer buffer;
  const std::span<std::uint8_t> before = buffer.Prepare(100);
  const Bytes fresh(before.begin(), before.end());
  std::ranges::fill(before, std::uint8_t{1});
  EXPECT_TRUE(std::ranges::equal(buffer.Prepare(50), std::span(fresh).first(50)));
  EXPECT_TRUE(buffer.IsIntact()) << "behind a shorter buffer as well";
  EXPECT_TRUE(std::ranges::equal(buffer.Prepare(100), fresh));
}

TEST(GuardedBufferTest, ADamageIsNotForgotten) {
  GuardedBuffer buffer;
  buffer.Prepare(100).data()[100] = 1;
  (void)buffer.Prepare(100);
  EXPECT_FALSE(buffer.IsIntact());
}

TEST(GuardedBufferTest, EveryByteBehindIsWatched) {
  for (std::size_t offset = 100; offset < 65'535; offset += offset < 200 ? 1 : 997) {
    GuardedBuffer buffer;
    buffer.Prepare(100).data()[offset] = 1;
    EXPECT_FALSE(buffer.IsIntact()) << offset;
  }
}

TEST(GuardedBufferTest, EveryByteBeforeIsWatched) {
  for (std::ptrdiff_t offset = 1; offset <= 4'096; offset += offset < 100 ? 1 : 97) {
    GuardedBuffer buffer;
    buffer.Prepare(100).data()[-offset] = 1;
    EXPECT_FALSE(buffer.IsIntact()) << offset;
  }
}

TEST(GuardedBufferTest, AGuardFilledWithOneValueIsSeen) {
  for (const int value : {0x00, 0xFF, 0x5A}) {
    GuardedBuffer buffer;
    std::fill_n(buffer.Prepare(100).data(), 65'535, static_cast<std::uint8_t>(value));
    EXPECT_FALSE(buffer.IsIntact()) << value;
  }
}

TEST(GuardedBufferTest, TheLargestBufferHasAGuardToo) {
  GuardedBuffer buffer;
  buffer.Prepare(65'535).data()[65'535] = 1;
  EXPECT_FALSE(buffer.IsIntact());
}

}  // namespace
}  // namespace ctapi::helper
