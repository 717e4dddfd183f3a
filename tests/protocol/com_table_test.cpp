#include "protocol/com_table.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <ostream>

#include "support/sentence_name.h"

namespace ctapi {
namespace {

TEST(ComTable, IsReadFromTheProgramsText) {
  EXPECT_EQ(ParseComTable("1=/dev/ttyS0;2=/dev/ttyUSB0"),
            (ComTable{{1, "/dev/ttyS0"}, {2, "/dev/ttyUSB0"}}));
  EXPECT_EQ(ParseComTable("12=/dev/ttyACM0"), (ComTable{{12, "/dev/ttyACM0"}}));
  EXPECT_EQ(ParseComTable("7=/dev/serial/by-id/a=b"), (ComTable{{7, "/dev/serial/by-id/a=b"}}));
  EXPECT_TRUE(ParseComTable("").empty());
}

TEST(ComTable, LeavesOutWhatIsNoEntry) {
  EXPECT_EQ(ParseComTable("0=/dev/a;-1=/dev/b;x=/dev/c;=/dev/d;3;4=;5 =/dev/e;99999999999=/dev/f;"
                          "6=/dev/g;;"),
            (ComTable{{6, "/dev/g"}}));
}

TEST(ComTable, TheVariableThatHandsItToTheLibraryHasAName) {
  EXPECT_STREQ(ComTableVariable, "KARTOCHECK_COM_PORTS");
}

struct Row {
  const char* sentence;
  std::vector<ComDevice> devices;
  ComTable overrides;
  const char* expected;  // as it is handed to the library

  friend std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.sentence; }
};

ComDevice BuiltIn(int number) {
  return {.Path = "/dev/ttyS" + std::to_string(number - 1), .BuiltInNumber = number};
}

ComDevice Usb(const char* path, const char* identification) {
  return {.Path = path, .Identification = identification};
}

std::vector<Row> Rows() {
  return {
      {"a machine without ports", {}, {}, ""},
      {"built-in ports have their own number",
       {BuiltIn(2), BuiltIn(1)},
       {},
       "1=/dev/ttyS0;2=/dev/ttyS1"},
      {"a built-in port has its number with nothing before it",
       {BuiltIn(32)},
       {},
       "32=/dev/ttyS31"},
      {"USB devices begin at 1 where there is no built-in port",
       {Usb("/dev/ttyUSB0", "A"), Usb("/dev/ttyACM0", "B")},
       {},
       "1=/dev/ttyUSB0;2=/dev/ttyACM0"},
      {"a gap in the built-in ports stays free for USB",
       {BuiltIn(1), BuiltIn(3), Usb("/dev/ttyUSB0", "A")},
       {},
       "1=/dev/ttyS0;2=/dev/ttyUSB0;3=/dev/ttyS2"},
      {"USB devices fill every gap before they go beyond the built-in ports",
       {Usb("/dev/ttyUSB0", "A"), BuiltIn(2), Usb("/dev/ttyUSB1", "B"), BuiltIn(4),
        Usb("/dev/ttyUSB2", "C")},
       {},
       "1=/dev/ttyUSB0;2=/dev/ttyS1;3=/dev/ttyUSB1;4=/dev/ttyS3;5=/dev/ttyUSB2"},
      {"USB devices stand in the order of their identification and not of their file",
       {Usb("/dev/ttyUSB0", "USB VID_0403 PID_6001 Z"),
        Usb("/dev/ttyUSB1", "USB VID_0403 PID_6001 A")},
       {},
       "1=/dev/ttyUSB1;2=/dev/ttyUSB0"},
      {"two of the same identification stand in the order of their file",
       {Usb("/dev/ttyUSB1", "A"), Usb("/dev/ttyUSB0", "A")},
       {},
       "1=/dev/ttyUSB0;2=/dev/ttyUSB1"},
      {"files stand in the order of their letters",
       {Usb("/dev/ttyUSB2", "A"), Usb("/dev/ttyUSB10", "A"), Usb("/dev/ttyACM0", "A")},
       {},
       "1=/dev/ttyACM0;2=/dev/ttyUSB10;3=/dev/ttyUSB2"},
      {"capital letters stand before small ones",
       {Usb("/dev/ttyUSB0", "a"), Usb("/dev/ttyUSB1", "B")},
       {},
       "1=/dev/ttyUSB1;2=/dev/ttyUSB0"},
      {"further USB devices have 5 and up",
       {BuiltIn(1), BuiltIn(2), BuiltIn(3), BuiltIn(4), Usb("/dev/ttyUSB0", "A"),
        Usb("/dev/ttyUSB1", "B")},
       {},
       "1=/dev/ttyS0;2=/dev/ttyS1;3=/dev/ttyS2;4=/dev/ttyS3;5=/dev/ttyUSB0;6=/dev/ttyUSB1"},
      {"an override takes its number from a built-in port",
       {BuiltIn(1), BuiltIn(2)},
       {{1, "/dev/pts/9"}},
       "1=/dev/pts/9;2=/dev/ttyS1"},
      {"a device that an override names has no second number",
       {Usb("/dev/ttyUSB0", "A"), Usb("/dev/ttyUSB1", "B")},
       {{4, "/dev/ttyUSB0"}},
       "1=/dev/ttyUSB1;4=/dev/ttyUSB0"},
      {"a built-in port under another number leaves its own free",
       {BuiltIn(1), Usb("/dev/ttyUSB0", "A")},
       {{2, "/dev/ttyS0"}},
       "1=/dev/ttyUSB0;2=/dev/ttyS0"},
      {"an override of a device that does not exist stands",
       {},
       {{3, "/dev/there-is-none"}},
       "3=/dev/there-is-none"},
      {"several overrides",
       {Usb("/dev/ttyUSB0", "A")},
       {{1, "/dev/pts/1"}, {2, "/dev/pts/2"}, {256, "/dev/pts/3"}},
       "1=/dev/pts/1;2=/dev/pts/2;3=/dev/ttyUSB0;256=/dev/pts/3"},
  };
}

class MadeComTable : public testing::TestWithParam<Row> {};

TEST_P(MadeComTable, Numbers) {
  const Row& row = GetParam();
  const ComTable table = MakeComTable(row.devices, row.overrides);
  EXPECT_EQ(ComTableText(table), row.expected);
  EXPECT_EQ(ParseComTable(row.expected), table);
}

// The order in which the system finds the devices does not matter.
TEST_P(MadeComTable, DoesNotDependOnTheOrderOfTheDevices) {
  Row row = GetParam();
  std::reverse(row.devices.begin(), row.devices.end());
  EXPECT_EQ(ComTableText(MakeComTable(row.devices, row.overrides)), row.expected);
}

INSTANTIATE_TEST_SUITE_P(Protocol, MadeComTable, testing::ValuesIn(Rows()),
                         kartocheck::test::SentenceName());

}  // namespace
}  // namespace ctapi
