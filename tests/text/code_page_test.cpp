#include "text/code_page.h"

#include <gtest/gtest.h>
#include <map>

#include "support/printing.h"

namespace kartocheck::test {
namespace {

// ISO/IEC 8859-15 as the standard lists its changes against ISO/IEC 8859-1, whose codes are those
// of Unicode.
const std::map<int, char32_t> ChangedAgainstLatin1{
    {0xA4, U'€'}, {0xA6, U'Š'}, {0xA8, U'š'}, {0xB4, U'Ž'},
    {0xB8, U'ž'}, {0xBC, U'Œ'}, {0xBD, U'œ'}, {0xBE, U'Ÿ'},
};

TEST(CodePageTest, EveryByteIsItsCharacterOfLatin9) {
  for (int byte = 0; byte < 256; ++byte) {
    SCOPED_TRACE(byte);
    const auto changed = ChangedAgainstLatin1.find(byte);
    const char32_t expected =
        changed == ChangedAgainstLatin1.end() ? static_cast<char32_t>(byte) : changed->second;
    EXPECT_EQ(static_cast<char32_t>(CharacterOf(static_cast<quint8>(byte)).unicode()), expected);
  }
}

TEST(CodePageTest, ATextHasOneCharacterAByte) {
  EXPECT_EQ(TextOf("M\xFCller \xA4 5"), u"Müller € 5");
  EXPECT_EQ(TextOf(QByteArrayView("a\0b", 3)).size(), 3);
  EXPECT_EQ(TextOf({}), u"");
}

TEST(CodePageTest, Utf8BytesAreNotGuessed) {
  EXPECT_EQ(TextOf("\xC3\xBC"), u"Ã\u0152");  // BC is the ligature OE
}

}  // namespace
}  // namespace kartocheck::test
