#include <gtest/gtest.h>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "kvk/kvk_reading.h"
#include "support/kvk_records.h"
#include "support/printing.h"
#include "support/sentence_name.h"

// Records with flipped bits, cut at every byte, and nonsense.

namespace kartocheck::test {
namespace {

struct RecordRow {
  const char* sentence;
  QStringView record;
  Kind kind;
  qsizetype templateBytes;  // without supplement

  friend std::ostream& operator<<(std::ostream& out, const RecordRow& row) {
    return out << row.sentence;
  }
};

const std::vector<RecordRow> Records{
    {"record A, form 60, from a card", u"A", Kind::Stationary, 92},
    {"record B, form 6081, from a card", u"B", Kind::Stationary, 164},
    {"record C, form 6081 with supplement, from a mobile terminal", u"C", Kind::Mobile, 164},
};

class DamagedRecordTest : public testing::TestWithParam<RecordRow> {
 protected:
  static QByteArray Bytes() {
    return QByteArray::fromHex(SampleRecord(GetParam().record).toLatin1());
  }
};

// Bit 0 of the length byte of B moves the end of the checksum range over the length byte 01 of the
// checksum element: two changes that cancel out. The elements are those of the whole record, and in
// C the supplement's check sees the shift.
bool CancelsOut(qsizetype byte, int bit, const RecordRow& row) {
  return byte == 2 && bit == 0 && row.record != u"A";
}

TEST_P(DamagedRecordTest, EveryFlippedBitMakesTheReadFail) {
  const RecordRow& row = GetParam();
  for (qsizetype byte = 0; byte < Bytes().size(); ++byte) {
    for (int bit = 0; bit < 8; ++bit) {
      SCOPED_TRACE("byte " + std::to_string(byte) + ", bit " + std::to_string(bit));
      QByteArray damaged = Bytes();
      damaged[byte] = static_cast<char>(damaged[byte] ^ (1 << bit));
      KvkReading reading(row.kind);
      const KvkResult result = reading.Read(HexOf(damaged));
      if (byte == 0) {
        // No template any more, and of no length of the fixed format: nothing is read.
        EXPECT_EQ(result, KvkResult::Read);
        EXPECT_TRUE(reading.insured.IsEmpty());
        EXPECT_TRUE(reading.Boxes().empty());
        continue;
      }
      if (CancelsOut(byte, bit, row)) {
        EXPECT_EQ(result, row.kind == Kind::Mobile ? KvkResult::Refused : KvkResult::Read);
        EXPECT_EQ(reading.Boxes(),
                  row.kind == Kind::Mobile ? std::vector{BadSupplement} : std::vector<QString>{});
        EXPECT_EQ(reading.insured[Element::LastName], u"Übermaß");
        continue;
      }
      EXPECT_EQ(result, KvkResult::Refused);
      std::vector<QString> boxes = reading.Boxes();
      if (boxes.size() == 2) {
        EXPECT_EQ(boxes.front(), DefectiveRecord) << "a tag or length was hit";
        boxes.erase(boxes.begin());
      }
      EXPECT_EQ(boxes, std::vector{byte < row.templateBytes ? BadChecksum : BadSupplement});
    }
  }
}

TEST_P(DamagedRecordTest, ARecordCutAnywhereFails) {
  const RecordRow& row = GetParam();
  const QString record = SampleRecord(row.record);
  for (qsizetype length = 0; length < record.size(); ++length) {
    SCOPED_TRACE("cut to " + std::to_string(length) + " characters");
    KvkReading reading(row.kind);
    EXPECT_EQ(reading.Read(record.first(length)), KvkResult::Refused);
    const QString& expected = length < 106                     ? NoKvk
                              : length < 2 * row.templateBytes ? BadChecksum
                                                               : BadSupplement;
    ASSERT_FALSE(reading.Boxes().empty());
    EXPECT_EQ(reading.Boxes().back(), expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Kvk, DamagedRecordTest, testing::ValuesIn(Records), SentenceName());

TEST(DamagedRecordTest, ACardsRecordIsWholeWithoutTheSupplement) {
  const QString record = SampleRecord(u"C");
  for (qsizetype length = 2 * 164; length <= record.size(); ++length) {
    KvkReading reading(Kind::Stationary);
    EXPECT_EQ(reading.Read(record.first(length)), KvkResult::Read) << length;
  }
}

// In form 6082 the byte in front of the checksum is not covered. It is the length of the checksum
// element: at the end of a record any length but 0 leads to the same byte.
TEST(DamagedRecordTest, EveryFlippedBitOfForm6082FailsButThoseNotCovered) {
  const QByteArray whole = QByteArray::fromHex(SampleRecord(u"B6082").toLatin1());
  const qsizetype lengthOfChecksum = whole.size() - 2;
  for (qsizetype byte = 1; byte < whole.size(); ++byte) {
    for (int bit = 0; bit < 8; ++bit) {
      SCOPED_TRACE("byte " + std::to_string(byte) + ", bit " + std::to_string(bit));
      QByteArray damaged = whole;
      damaged[byte] = static_cast<char>(damaged[byte] ^ (1 << bit));
      KvkReading reading;
      const bool unseen = byte == lengthOfChecksum && bit > 0;
      EXPECT_EQ(reading.Read(HexOf(damaged)), unseen ? KvkResult::Read : KvkResult::Refused);
      if (unseen) continue;
      EXPECT_EQ(reading.Boxes().back(), BadChecksum);
    }
  }
}

TEST(DamagedRecordTest, NonsenseOfEveryLengthEndsInAResult) {
  std::mt19937 random(20'240'305);
  for (int length = 0; length <= 300; ++length) {
    for (const bool asTemplate : {false, true}) {
      QByteArray bytes(length, Qt::Uninitialized);
      for (char& byte : bytes) byte = static_cast<char>(random());
      if (asTemplate && length > 0) bytes[0] = 0x60;
      if (asTemplate && length > 1 && length % 3 != 0) {
        bytes[1] = static_cast<char>(0x80 + length % 3);
      }
      for (const Kind kind : {Kind::Stationary, Kind::Mobile}) {
        KvkReading reading(kind);
        const KvkResult result = reading.Read(HexOf(bytes));
        EXPECT_TRUE(result == KvkResult::Read || !reading.Boxes().empty());
        EXPECT_LE(reading.Boxes().size(), 2U);
      }
    }
  }
}

}  // namespace
}  // namespace kartocheck::test
