#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "platform/port.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

struct PortRow {
  const char* sentence;
  int pn;
  bool usbVirtualCom;
  QStringView expected;

  friend std::ostream& operator<<(std::ostream& out, const PortRow& row) {
    return out << row.sentence;
  }
};

class PortDescriptionTest : public testing::TestWithParam<PortRow> {};

TEST_P(PortDescriptionTest, Text) {
  const PortRow& row = GetParam();
  EXPECT_EQ(Port(row.pn).Description(row.usbVirtualCom), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Platform, PortDescriptionTest,
    testing::ValuesIn(std::vector<PortRow>{
        {"the first serial port", 1, false, u"COM (CTAPI pn=1)"},
        {"the last serial port", 256, false, u"COM (CTAPI pn=256)"},
        {"a USB cable as serial port 3", 3, true, u"USB Virtuell COM (CTAPI pn=3)"},
        {"a USB cable as the last serial port", 256, true, u"USB Virtuell COM (CTAPI pn=256)"},
        {"the number behind the serial ports is of unknown kind", 257, false, u"? (CTAPI pn=257)"},
        {"no USB cable outside the serial ports", 257, true, u"? (CTAPI pn=257)"},
        {"the number before the USB devices is of unknown kind", 8191, false, u"? (CTAPI pn=8191)"},
        {"the first USB device", 8192, false, u"USB (CTAPI pn=8192)"},
        {"a USB device whatever the flag says", 8200, true, u"USB (CTAPI pn=8200)"},
        {"the last USB device", 8447, false, u"USB (CTAPI pn=8447)"},
        {"the number behind the USB devices is of unknown kind", 8448, false, u"? (CTAPI pn=8448)"},
    }),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
