#include "text/lines.h"

#include <gtest/gtest.h>

#include "support/printing.h"

namespace kartocheck::test {
namespace {

TEST(LinesTest, LinesAreJoinedWithCrLf) {
  EXPECT_EQ(Lines({u" one ", u" two "}), u" one \r\n two ");
}

TEST(LinesTest, OneLineHasNoBreak) {
  EXPECT_EQ(Lines({u"one"}), u"one");
  EXPECT_EQ(Lines({}), u"");
}

TEST(LinesTest, AnEmptyLineGivesTwoBreaks) {
  EXPECT_EQ(Lines({u"one", u"", u"two"}), u"one\r\n\r\ntwo");
  EXPECT_EQ(Lines({u"", u"", u"one"}), u"\r\n\r\none");
  EXPECT_EQ(Lines({u"one", u""}), u"one\r\n");
}

}  // namespace
}  // namespace kartocheck::test
