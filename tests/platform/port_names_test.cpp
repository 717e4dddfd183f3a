#include <gtest/gtest.h>
#include <ostream>

#include "platform/port.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

struct NameRow {
  const char* sentence;
  int pn;
  QStringView name;
  QStringView line;

  friend std::ostream& operator<<(std::ostream& out, const NameRow& row) {
    return out << row.sentence;
  }
};

class PortNameTest : public testing::TestWithParam<NameRow> {};

TEST_P(PortNameTest, NameAndLine) {
  EXPECT_EQ(Port(GetParam().pn).Name(), GetParam().name);
  EXPECT_EQ(Port(GetParam().pn).Line(), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Platform, PortNameTest,
    testing::Values(
        NameRow{"the first further serial port", 5, u"COM 5", u"COM 5 (CTAPI pn=5)"},
        NameRow{"the last serial port", 256, u"COM 256", u"COM 256 (CTAPI pn=256)"},
        NameRow{"the number behind the serial ports is of unknown kind", 257, u"?Device 257",
                u"?Device 257 (CTAPI pn=257)"},
        NameRow{"the number before the USB devices is of unknown kind", 8191, u"?Device 8191",
                u"?Device 8191 (CTAPI pn=8191)"},
        NameRow{"USB devices count from 1", 8192, u"USB Device 1", u"USB Device 1 (CTAPI pn=8192)"},
        NameRow{"the last USB device", 8447, u"USB Device 256", u"USB Device 256 (CTAPI pn=8447)"},
        NameRow{"the number behind the USB devices is of unknown kind", 8448, u"?Device 8448",
                u"?Device 8448 (CTAPI pn=8448)"}),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
