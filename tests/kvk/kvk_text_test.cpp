#include <gtest/gtest.h>
#include <map>

#include "kvk/kvk_reader.h"
#include "support/kvk_records.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

// The national characters of DIN 66003 that the KVK uses; 40 (section sign in DIN 66003) is not
// among them.
const std::map<int, char16_t> GermanCharacters{{0x5B, u'Ä'}, {0x5C, u'Ö'}, {0x5D, u'Ü'},
                                               {0x7B, u'ä'}, {0x7C, u'ö'}, {0x7D, u'ü'},
                                               {0x7E, u'ß'}};
const std::map<int, char16_t> Latin9{{0xA4, u'€'}, {0xA6, u'Š'}, {0xA8, u'š'}, {0xB4, u'Ž'},
                                     {0xB8, u'ž'}, {0xBC, u'Œ'}, {0xBD, u'œ'}, {0xBE, u'Ÿ'}};

TEST(HexToKvkTextTest, EveryByte) {
  for (int byte = 0; byte < 256; ++byte) {
    SCOPED_TRACE(byte);
    auto expected = static_cast<char16_t>(byte);
    if (GermanCharacters.contains(byte)) expected = GermanCharacters.at(byte);
    if (Latin9.contains(byte)) expected = Latin9.at(byte);
    EXPECT_EQ(HexToKvkText(HexOf(QByteArray(1, static_cast<char>(byte)))), QString(expected));
  }
}

TEST(HexToKvkTextTest, WholeTexts) {
  EXPECT_EQ(HexToKvkText(u"5B5C5D7B7C7D7E"), u"ÄÖÜäöüß");
  EXPECT_EQ(HexToKvkText(u"4D7D6C6C6572"), u"Müller");
  EXPECT_EQ(HexToKvkText(u""), u"");
  EXPECT_EQ(HexToKvkText(u"204120"), u" A ") << "blanks are the caller's";
}

TEST(HexToKvkTextTest, HalfAByteAtTheEndIsNoCharacter) {
  EXPECT_EQ(HexToKvkText(u"41424"), u"AB");
}

TEST(KvkXorChecksumTest, TheSumOfRecordA) {
  const QString record = SampleRecord(u"A");
  EXPECT_EQ(KvkXorChecksum(record, 1, record.size() - 2), 0xED);
  EXPECT_EQ(KvkXorChecksum(record, 1, record.size()), 0);
  EXPECT_EQ(KvkXorChecksum(record, 3, 2), 0) << "an empty range";
}

TEST(OutputFormatTextTest, EveryForm) {
  EXPECT_EQ(OutputFormatText(KvkForm::Template60), u"PC (ASN-1)");
  EXPECT_EQ(OutputFormatText(KvkForm::Template6081), u"PC (ASN-1)");
  EXPECT_EQ(OutputFormatText(KvkForm::Template6082), u"PC (ASN-1)");
  EXPECT_EQ(OutputFormatText(KvkForm::Fixed), u"PC (Festformat)");
  EXPECT_EQ(OutputFormatText(KvkForm::Unknown), u"PC (Format nicht bekannt)");
}

}  // namespace
}  // namespace kartocheck::test
