#include "platform/serial_devices.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "support/com_table_rows.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

SerialDevice BuiltIn(int number) {
  return {.path = QStringLiteral("/dev/ttyS%1").arg(number - 1),
          .builtInNumber = number,
          .identification = {}};
}

SerialDevice Usb(int index, const char16_t* identification) {
  return {.path = QStringLiteral("/dev/ttyUSB%1").arg(index),
          .builtInNumber = {},
          .identification = QString::fromUtf16(identification)};
}

struct TableRow {
  const char* sentence;
  std::vector<SerialDevice> devices;
  ComTable overrides;
  const char* expected;  // as ComTableText writes it

  friend std::ostream& operator<<(std::ostream& out, const TableRow& row) {
    return out << row.sentence;
  }
};

class ComTableTest : public testing::TestWithParam<TableRow> {};

TEST_P(ComTableTest, Numbers) {
  const TableRow& row = GetParam();
  EXPECT_EQ(ComTableText(MakeComTable(row.devices, row.overrides)), row.expected);
}

// The order in which the system finds the devices does not matter.
TEST_P(ComTableTest, DoNotDependOnTheOrderOfTheDevices) {
  TableRow row = GetParam();
  std::reverse(row.devices.begin(), row.devices.end());
  EXPECT_EQ(ComTableText(MakeComTable(row.devices, row.overrides)), row.expected);
}

QString Path(const char16_t* path) {
  return QString::fromUtf16(path);
}

std::vector<TableRow> RowsOfTheLibraryToo() {
  std::vector<TableRow> rows;
  for (const ComTableRow& each : ComTableRows()) {
    TableRow& row = rows.emplace_back(TableRow{each.sentence, {}, {}, each.expected});
    for (const ComTableRow::Device& device : each.devices) {
      row.devices.push_back({.path = QString::fromStdString(device.path),
                             .builtInNumber = device.builtInNumber,
                             .identification = QString::fromStdString(device.identification)});
    }
  }
  return rows;
}

INSTANTIATE_TEST_SUITE_P(WithoutOverrides, ComTableTest, testing::ValuesIn(RowsOfTheLibraryToo()),
                         SentenceName());

INSTANTIATE_TEST_SUITE_P(
    WithOverrides, ComTableTest,
    testing::Values(
        TableRow{"an override takes its number from a built-in port",
                 {BuiltIn(1), BuiltIn(2)},
                 {{1, Path(u"/dev/pts/9")}},
                 "1=/dev/pts/9;2=/dev/ttyS1"},
        TableRow{"a device that an override names has no second number",
                 {Usb(0, u"A"), Usb(1, u"B")},
                 {{4, Path(u"/dev/ttyUSB0")}},
                 "1=/dev/ttyUSB1;4=/dev/ttyUSB0"},
        TableRow{"a built-in port under another number leaves its own free",
                 {BuiltIn(1), Usb(0, u"A")},
                 {{2, Path(u"/dev/ttyS0")}},
                 "1=/dev/ttyUSB0;2=/dev/ttyS0"},
        TableRow{"an override of a device that does not exist stands",
                 {},
                 {{3, Path(u"/dev/there-is-none")}},
                 "3=/dev/there-is-none"},
        TableRow{"several overrides",
                 {Usb(0, u"A")},
                 {{1, Path(u"/dev/pts/1")}, {2, Path(u"/dev/pts/2")}, {256, Path(u"/dev/pts/3")}},
                 "1=/dev/pts/1;2=/dev/pts/2;3=/dev/ttyUSB0;256=/dev/pts/3"}),
    SentenceName());

TEST(SerialDevicesTest, AnOverrideMayNameADeviceByALink) {
  const QTemporaryDir folder;
  const QString device = QFileInfo(folder.path()).canonicalFilePath() + u"/ttyUSB0";
  const QString link = folder.filePath(QStringLiteral("by-id"));
  QFile file(device);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_TRUE(QFile::link(device, link));
  const ComTable table = MakeComTable(
      {{.path = device, .builtInNumber = {}, .identification = QStringLiteral("A")}}, {{2, link}});
  EXPECT_EQ(table, (ComTable{{2, link}})) << "the device has no second number";
  EXPECT_EQ(DeviceFileOf(link), device);
  EXPECT_EQ(DeviceFileOf(QStringLiteral("/dev/there-is-none")), u"/dev/there-is-none");
}

TEST(SerialDevicesTest, TheTableForTheLibraryHasAName) {
  EXPECT_STREQ(ComTableVariable, "KARTOCHECK_COM_PORTS");
}

// Whatever this machine has: devices are there, and only hardware counts.
// A container may know of the machine's devices without having their device files.
TEST(SerialDevicesTest, EveryDeviceWithAFileIsThere) {
  for (const SerialDevice& device : FindSerialDevices()) {
    EXPECT_TRUE(device.path.startsWith(u"/dev/")) << device.path.toStdString();
    EXPECT_EQ(StateOfDevice(device.path) == DeviceState::Absent, !QFile::exists(device.path))
        << device.path.toStdString();
    EXPECT_EQ(device.builtInNumber.has_value(), device.identification.isEmpty());
  }
}

TEST(SerialDevicesTest, NoDeviceIsFoundTwice) {
  QStringList paths;
  for (const SerialDevice& device : FindSerialDevices()) paths.append(device.path);
  EXPECT_EQ(paths.removeDuplicates(), 0);
}

TEST(SerialDevicesTest, NoGroupOfWhatDoesNotExist) {
  EXPECT_EQ(GroupOfDevice(QStringLiteral("/dev/there-is-none")), QString());
}

}  // namespace
}  // namespace kartocheck::test
