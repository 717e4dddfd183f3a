#include "text/fixed_text.h"

#include <gtest/gtest.h>

#include "support/printing.h"

namespace kartocheck::test {
namespace {

TEST(FixedTextTest, StartsBlank) {
  const FixedText<5> text;
  EXPECT_EQ(text.Padded(), u"     ");
  EXPECT_EQ(text.Trimmed(), u"");
  EXPECT_TRUE(text.IsBlank());
}

TEST(FixedTextTest, PadsAShorterTextOnTheRight) {
  FixedText<5> text;
  text = u"PKT";
  EXPECT_EQ(text.Padded(), u"PKT  ");
  EXPECT_EQ(text.Trimmed(), u"PKT");
  EXPECT_FALSE(text.IsBlank());
}

TEST(FixedTextTest, CutsALongerText) {
  const FixedText<5> text(u"PKTDM-2");
  EXPECT_EQ(text.Padded(), u"PKTDM");
}

TEST(FixedTextTest, KeepsLeadingAndInnerBlanks) {
  const FixedText<8> text(u"  a b ");
  EXPECT_EQ(text.Padded(), u"  a b   ");
  EXPECT_EQ(text.Trimmed(), u"  a b");
}

TEST(FixedTextTest, ComparingSeesThePadding) {
  const FixedText<5> text(u"PKTD");
  EXPECT_TRUE(text == u"PKTD ");
  EXPECT_FALSE(text == u"PKTD");
  EXPECT_TRUE(text == FixedText<5>(u"PKTD "));
  EXPECT_FALSE(text == FixedText<5>(u"PKTDM"));
}

TEST(FixedTextTest, AnEmptyTextBlanksTheField) {
  FixedText<3> text(u"abc");
  text = u"";
  EXPECT_EQ(text.Padded(), u"   ");
}

TEST(FixedTextTest, WidthsCountCharactersNotBytes) {
  const FixedText<3> text(u"äöüß");
  EXPECT_EQ(text.Padded(), u"äöü");
}

}  // namespace
}  // namespace kartocheck::test
