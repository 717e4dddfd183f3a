#include "terminal/slot.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace kartocheck::test {
namespace {

TEST(SlotTest, PortsOneToFourHaveASlotEachAndAllFurtherPortsShareOne) {
  EXPECT_EQ(Port(1).Slot(), 1);
  EXPECT_EQ(Port(4).Slot(), 4);
  EXPECT_EQ(Port(5).Slot(), 5);
  EXPECT_EQ(Port(6).Slot(), 5);
  EXPECT_EQ(Port(7).Slot(), 5);
  EXPECT_EQ(Port(256).Slot(), 5);
  EXPECT_EQ(Port(8193).Slot(), 5);
}

TEST(SlotTest, UsbPortsAreThoseOfTheDriver) {
  EXPECT_FALSE(Port(256).IsUsb());
  EXPECT_FALSE(Port(8191).IsUsb());
  EXPECT_TRUE(Port(8192).IsUsb());
  EXPECT_TRUE(Port(8447).IsUsb());
  EXPECT_FALSE(Port(8448).IsUsb());
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
