#include "terminal/slot.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace kartocheck::test {
namespace {

TEST(SlotTest, PortsOneToFourHaveASlotEachAndAllFurtherPortsShareOne) {
  EXPECT_EQ(SlotOf(1), 1);
  EXPECT_EQ(SlotOf(4), 4);
  EXPECT_EQ(SlotOf(5), 5);
  EXPECT_EQ(SlotOf(6), 5);
  EXPECT_EQ(SlotOf(7), 5);
  EXPECT_EQ(SlotOf(256), 5);
  EXPECT_EQ(SlotOf(8193), 5);
}

TEST(SlotTest, UsbPortsAreThoseOfTheDriver) {
  EXPECT_FALSE(IsUsbPort(256));
  EXPECT_FALSE(IsUsbPort(8191));
  EXPECT_TRUE(IsUsbPort(8192));
  EXPECT_TRUE(IsUsbPort(8447));
  EXPECT_FALSE(IsUsbPort(8448));
}

TEST(SlotTest, ATableIsIndexedByTheSlotNumber) {
  PerSlot<int> table;
  for (int slot = 1; slot <= SlotCount; ++slot) table[slot] = 10 * slot;
  EXPECT_EQ(*table.begin(), 10);
  EXPECT_EQ(table[5], 50);
}

TEST(SlotTest, AnyOtherSlotNumberIsRefused) {
  PerSlot<int> table;
  EXPECT_THROW((void)table[0], std::out_of_range);
  EXPECT_THROW((void)table[6], std::out_of_range);
  EXPECT_THROW((void)table[-1], std::out_of_range);
}

}  // namespace
}  // namespace kartocheck::test
