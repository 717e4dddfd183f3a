#include "ui/rich_text/rtf_reader.h"

#include <gtest/gtest.h>
#include <string>

#include "support/printing.h"

namespace kartocheck::test {
namespace {

std::vector<QString> Paragraphs(const char* rtf) {
  std::vector<QString> texts;
  for (const TextParagraph& paragraph : ReadRtf(rtf)) texts.push_back(paragraph.Text());
  return texts;
}

using Texts = std::vector<QString>;

TEST(RtfTextTest, ParagraphsEndWithPar) {
  EXPECT_EQ(Paragraphs("{\\rtf1 Eins\\par Zwei\\par\\par}"),
            (Texts{QStringLiteral("Eins"), QStringLiteral("Zwei"), QString()}));
}

TEST(RtfTextTest, TheLastParagraphNeedsNoEnd) {
  EXPECT_EQ(Paragraphs("{\\rtf1 Eins\\par Zwei}"),
            (Texts{QStringLiteral("Eins"), QStringLiteral("Zwei")}));
}

struct TextRow {
  const char* description;
  const char* rtf;
  const char16_t* text;
};

class RtfTextRowTest : public testing::TestWithParam<TextRow> {};

TEST_P(RtfTextRowTest, IsRead) {
  QString text;
  for (const TextParagraph& paragraph : ReadRtf(GetParam().rtf)) text += paragraph.Text();
  EXPECT_EQ(text, GetParam().text) << GetParam().description;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RtfTextRowTest,
    testing::Values(
        TextRow{"line ends of the file are no text", "a\r\nb\nc", u"abc"},
        TextRow{"one blank ends a control word", "\\b  a\\b0  b", u" a b"},
        TextRow{"escaped signs", "\\{a\\}\\\\b", u"{a}\\b"},
        TextRow{"tab and line break", "a\\tab b\\line c", u"a\tb\u2028c"},
        TextRow{"blank that does not break", "8\\~Bit", u"8\u00A0Bit"},
        TextRow{"umlauts", "\\'e4\\'f6\\'fc\\'c4\\'d6\\'dc\\'df\\'DF", u"äöüÄÖÜßß"},
        TextRow{"signs of code page 1252", "\\'80 \\'84x\\'93 \\'96 \\'85", u"€ „x“ – …"},
        TextRow{"bytes of code page 1252", "f\xFC\x80", u"fü€"},
        TextRow{"bytes that 1252 does not assign", "a\\'81b\\'9d", u"a\uFFFDb\uFFFD"},
        TextRow{"tables are no text", "{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red0;}a", u"a"},
        TextRow{"facts and styles are no text", "{\\info{\\author X}}{\\stylesheet{Y}}b", u"b"},
        TextRow{"unknown groups that may be passed over", "{\\*\\generator Z;}c", u"c"},
        TextRow{"a picture is no text", "{\\pict 0102}d", u"d"},
        TextRow{"unknown control words", "\\lang1031\\viewkind4 e\\unknown-5f", u"ef"},
        TextRow{"a minus without a number is text", "\\b-x", u"-x"}, TextRow{"nothing", "", u""},
        TextRow{"only braces", "{{}{}}", u""}, TextRow{"more closed than opened", "}}}a}b", u"ab"},
        TextRow{"more opened than closed", "{{{a", u"a"},
        TextRow{"ends behind the backslash", "a\\", u"a"},
        TextRow{"ends in a control word", "a\\pa", u"a"},
        TextRow{"ends in an escape", "a\\'", u"a"}, TextRow{"ends in a byte", "a\\'f", u"af"},
        TextRow{"no byte in the escape", "a\\'xyb", u"axyb"},
        TextRow{"a number too large", "\\fs99999999999999999999a", u"a"},
        TextRow{"a symbol without a meaning", "a\\;b", u"ab"}));

TEST(RtfTextTest, ADeepNestIsRead) {
  const std::string deep = std::string(5'000, '{') + "\\b a" + std::string(5'000, '}') + "b";
  const FormattedText text = ReadRtf(QByteArrayView(deep));
  ASSERT_EQ(text.size(), 1U);
  EXPECT_EQ(text[0].Text(), u"ab");
  ASSERT_EQ(text[0].runs.size(), 2U);
  EXPECT_TRUE(text[0].runs[0].isBold);
  EXPECT_FALSE(text[0].runs[1].isBold);
}

TEST(RtfTextTest, ZeroBytesAreNoText) {
  EXPECT_EQ(ReadRtf(QByteArrayView("a\0b", 3)).at(0).Text(), u"ab");
}

TEST(RtfFormatTest, CharactersHaveTheirFormat) {
  const FormattedText text = ReadRtf("{\\fs20 a{\\b b\\i c\\b0 d}e\\fs28 f\\plain g}");
  ASSERT_EQ(text.size(), 1U);
  struct Run {
    const char16_t* text;
    bool isBold;
    bool isItalic;
    int halfPoints;
  };
  const Run expected[] = {{u"a", false, false, 20}, {u"b", true, false, 20},
                          {u"c", true, true, 20},   {u"d", false, true, 20},
                          {u"e", false, false, 20}, {u"f", false, false, 28},
                          {u"g", false, false, 24}};
  const auto& runs = text[0].runs;
  ASSERT_EQ(runs.size(), std::size(expected));
  for (std::size_t run = 0; run < runs.size(); ++run) {
    EXPECT_EQ(runs[run].text, expected[run].text);
    EXPECT_EQ(runs[run].isBold, expected[run].isBold) << run;
    EXPECT_EQ(runs[run].isItalic, expected[run].isItalic) << run;
    EXPECT_EQ(runs[run].halfPoints, expected[run].halfPoints) << run;
  }
}

TEST(RtfFormatTest, TextOfOneFormatIsOnePiece) {
  EXPECT_EQ(ReadRtf("a{b}\\b0 c").at(0).runs.size(), 1U);
}

TEST(RtfFormatTest, FontSizesStayWithinReason) {
  const std::pair<const char*, int> rows[] = {
      {"\\fs0 a", 1}, {"\\fs-20 a", 1}, {"\\fs a", 24}, {"\\fs400 a", 400}, {"\\fs9999 a", 400}};
  for (const auto& [rtf, halfPoints] : rows) {
    EXPECT_EQ(ReadRtf(rtf).at(0).runs.at(0).halfPoints, halfPoints) << rtf;
  }
}

TEST(RtfFormatTest, ParagraphsHaveTheFormatAtTheirEnd) {
  const FormattedText text = ReadRtf(
      "{\\pard\\qc\\sb60\\sa120 a\\par\\pard\\li400\\fi-400 b\\par c\\par\\ql\\pard d\\par}");
  ASSERT_EQ(text.size(), 4U);
  EXPECT_TRUE(text[0].isCentered);
  EXPECT_EQ(text[0].spaceBefore, 60);
  EXPECT_EQ(text[0].spaceAfter, 120);
  for (const std::size_t paragraph : {1U, 2U}) {
    EXPECT_FALSE(text[paragraph].isCentered);
    EXPECT_EQ(text[paragraph].spaceAfter, 0);
    EXPECT_EQ(text[paragraph].leftIndent, 400);
    EXPECT_EQ(text[paragraph].firstLineIndent, -400);
  }
  EXPECT_EQ(text[3].leftIndent, 0);
}

TEST(RtfFormatTest, DistancesStayWithinReason) {
  const FormattedText text = ReadRtf("\\li99999999\\fi-99999999\\sb-5\\sa-5 a\\par");
  EXPECT_EQ(text.at(0).leftIndent, 14'400);
  EXPECT_EQ(text.at(0).firstLineIndent, -14'400);
  EXPECT_EQ(text.at(0).spaceBefore, 0);
  EXPECT_EQ(text.at(0).spaceAfter, 0);
}

TEST(RtfFormatTest, LeftAlignmentEndsTheCentring) {
  EXPECT_FALSE(ReadRtf("\\qc\\ql a\\par").at(0).isCentered);
}

}  // namespace
}  // namespace kartocheck::test
