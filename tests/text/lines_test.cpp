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

TEST(OneLineTest, EveryBreakBecomesABlank) {
  EXPECT_EQ(OneLine(u"one\r\ntwo\nthree\rfour"), u"one two three four");
  EXPECT_EQ(OneLine(u"\v\f\x85\x2028\x2029"), u"     ");
  EXPECT_EQ(OneLine(u"\n\r\r\n\n"), u"    ") << "a pair counts once, in this order only";
}

TEST(OneLineTest, EverythingElseStays) {
  EXPECT_EQ(OneLine(u""), u"");
  EXPECT_EQ(OneLine(u"  Müller \t Meier  "), u"  Müller \t Meier  ");
}

}  // namespace
}  // namespace kartocheck::test
