// Lengths and offsets that a card's files tell, at and past their limits, and what becomes of the
// blocks.

#include <gtest/gtest.h>

#include "egk/readers/egk_reading.h"
#include "egk/readers/sample_documents.h"
#include "egk/readers/script_parts.h"
#include "support/dialogue.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

std::string Answer(std::initializer_list<int> numbers) {
  QByteArray bytes;
  for (const int number : numbers) bytes += Number(number);
  return "< " + bytes.toHex().toUpper().toStdString() + "9000";
}

// The dialogue in which a header leads to a block, or in which its section ends there.
std::string Script(const ScriptParts& intact, const std::string& headerPart,
                   std::initializer_list<int> header, const std::string& blockPart, int offset,
                   const QByteArray& block) {
  const ScriptParts changed = intact.Answering(headerPart, Answer(header));
  if (block.isEmpty()) return changed.WithoutRestOfSection(headerPart).Text();
  return changed.Replacing(blockPart, BlockScript(offset, block)).Text();
}

// The compressed text in a block of the size, or a block of other data where it has no room.
QByteArray BlockOf(const QString& text, int size) {
  const QByteArray compressed = Compressed(text);
  return compressed.size() > size ? QByteArray(size, 'x') : compressed.leftJustified(size, '\0');
}

struct OffsetRow {
  const char* sentence;
  int start;
  int end;
  int size;  // of the block that is read; 0: refused

  friend std::ostream& operator<<(std::ostream& out, const OffsetRow& row) {
    return out << row.sentence;
  }
};

class CardVdOffsetsTest : public testing::TestWithParam<OffsetRow> {};

TEST_P(CardVdOffsetsTest, ReadOrRefused) {
  const OffsetRow& row = GetParam();
  const QByteArray vd = BlockOf(VdDocument(), row.size);
  Dialogue dialogue(
      Script(CardScript(), "VdOffsets", {row.start, row.end}, "VdBlock", row.start, vd).c_str());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
  if (row.size == 0) {
    EXPECT_EQ(reading.Boxes(), Texts({u"\r\nKeine gültigen Daten in EF VD \r\n"}));
    EXPECT_EQ(reading.insured, SampleElements(true, false));
  } else {
    EXPECT_EQ(reading.Boxes(), Texts({}));
    EXPECT_TRUE(row.size < 500 || reading.Document(VsdKind::Vd).xmlText == VdDocument());
  }
}

INSTANTIATE_TEST_SUITE_P(Card, CardVdOffsetsTest,
                         testing::ValuesIn(std::vector<OffsetRow>{
                             {"1 to 792 are 792 bytes", 1, 792, 792},
                             {"1 to 793 are too many", 1, 793, 0},
                             {"8 to 799 are 792 bytes", 8, 799, 792},
                             {"8 to 800 are too many", 8, 800, 0},
                             {"8 to 515", 8, 515, 508},
                             {"the first offset above a byte", 0x0100, 0x0100 + 599, 600},
                             {"one byte", 8, 8, 1},
                             {"the end before the start", 8, 7, 0},
                             {"a start of 0", 0, 500, 0},
                             {"an end of 0", 8, 0, 0},
                             {"both 0", 0, 0, 0},
                             {"a start of 1 with an end of 1", 1, 1, 1},
                             {"up to the last offset", 0x7FFF - 599, 0x7FFF, 600},
                             {"a start past the last offset, an end before the start", 0x8000,
                              0x7FFF, 0},
                             {"FFFF to 0", 0xFFFF, 0, 0},
                             {"FFFF to 1", 0xFFFF, 1, 0},
                             {"1 to FFFF", 1, 0xFFFF, 0},
                         }),
                         SentenceName());

void ExpectVdUnreadable(const ScriptParts& script) {
  Dialogue dialogue(script.Text());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
  EXPECT_EQ(reading.Boxes(), Texts({u"Read EF VD war nicht erfolgreich!\r\n"}));
  EXPECT_EQ(reading.insured, SampleElements(true, false));
}

// READ BINARY cannot address such a block: the read fails, as that of the container's GVD does.
TEST(CardVdOffsetsTest, BehindTheLastOffset) {
  for (const auto& [start, end] : {std::pair{0x8000, 0x8100}, {0x8000, 0x8000}, {0xFFFF, 0xFFFF}}) {
    ExpectVdUnreadable(CardScript()
                           .Answering("VdOffsets", Answer({start, end}))
                           .WithoutRestOfSection("VdOffsets"));
  }
}

TEST(CardVdOffsetsTest, AcrossTheLastOffset) {
  const std::string reads = Exchange(CommandAt(0x7FFF - 251, 252), QByteArray(252, 'x'));
  ExpectVdUnreadable(CardScript()
                         .Answering("VdOffsets", Answer({0x7FFF - 251, 0x8000 + 299}))
                         .Replacing("VdBlock", reads));
}

class CardPdLengthTest : public testing::TestWithParam<OffsetRow> {};

TEST_P(CardPdLengthTest, ReadOrRefused) {
  const OffsetRow& row = GetParam();
  const QByteArray pd = BlockOf(PdDocument(), row.size);
  Dialogue dialogue(Script(CardScript(), "PdLength", {row.end}, "PdBlock", 2, pd).c_str());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
  if (row.size == 0) {
    EXPECT_EQ(reading.Boxes(), Texts({u"\r\nKeine gültigen Daten in EF PD \r\n"}));
    EXPECT_EQ(reading.insured, SampleElements(false, true));
  } else {
    EXPECT_EQ(reading.Boxes(), Texts({}));
    EXPECT_TRUE(row.size < 600 || reading.Document(VsdKind::Pd).xmlText == PdDocument());
  }
}

INSTANTIATE_TEST_SUITE_P(Card, CardPdLengthTest,
                         testing::ValuesIn(std::vector<OffsetRow>{
                             {"848 bytes", 0, 848, 848},
                             {"849 bytes are too many", 0, 849, 0},
                             {"600 bytes", 0, 600, 600},
                             {"one byte", 0, 1, 1},
                             {"no byte", 0, 0, 0},
                             {"above 7FFF", 0, 0x8000, 0},
                             {"FFFF", 0, 0xFFFF, 0},
                         }),
                         SentenceName());

class CardContainerGvdTest : public testing::TestWithParam<OffsetRow> {};

TEST_P(CardContainerGvdTest, ReadOrRefused) {
  const OffsetRow& row = GetParam();
  const QByteArray gvd = BlockOf(GvdDocument(), row.size);
  Dialogue dialogue(
      Script(CardScript(), "GvdOffsets", {row.start, row.end}, "GvdBlock", row.start, gvd).c_str());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
  EXPECT_EQ(reading.insured, SampleElements());
  if (row.size == 0) {
    EXPECT_EQ(reading.Boxes(), Texts({u"\r\nKeine gültigen GVD Daten im EF VD Container! \r\n"}));
    EXPECT_EQ(reading.Document(VsdKind::Gvd).xmlText, u"");
  } else {
    EXPECT_EQ(reading.Boxes(), Texts({}));
    EXPECT_TRUE(row.size < 300 || reading.Document(VsdKind::Gvd).xmlText == GvdDocument());
  }
}

INSTANTIATE_TEST_SUITE_P(Card, CardContainerGvdTest,
                         testing::ValuesIn(std::vector<OffsetRow>{
                             {"448 bytes", 508, 508 + 447, 448},
                             {"449 bytes are too many", 508, 508 + 448, 0},
                             {"300 bytes", 508, 508 + 299, 300},
                             {"one byte", 508, 508, 1},
                             {"from 0 on", 0, 299, 300},
                             {"only the start is 0, one byte too many", 0, 448, 0},
                             {"the end before the start", 508, 507, 0},
                             {"FFFF to 0", 0xFFFF, 0, 0},
                             {"FFFF to FFFE", 0xFFFF, 0xFFFE, 0},
                             {"0 to FFFF", 0, 0xFFFF, 0},
                             {"up to the last offset", 0x7FFF - 299, 0x7FFF, 300},
                         }),
                         SentenceName());

// READ BINARY cannot address such a block, so nothing is sent for it.
TEST(CardContainerGvdTest, BehindTheLastOffset) {
  for (const int start : {0x8000, 0xFFFE}) {
    Dialogue dialogue(CardScript()
                          .Answering("GvdOffsets", Answer({start, start + 1}))
                          .WithoutRestOfSection("GvdOffsets")
                          .Text()
                          .c_str());
    EgkReading reading(dialogue);
    EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
    EXPECT_EQ(reading.Boxes(),
              Texts({u"Read GVD Daten aus EF VD Container war nicht erfolgreich!\r\n"}));
  }
}

class CardEfGvdLengthTest : public testing::TestWithParam<OffsetRow> {};

TEST_P(CardEfGvdLengthTest, ReadOrRefused) {
  const OffsetRow& row = GetParam();
  const QByteArray gvd = BlockOf(GvdDocument(), row.size);
  Dialogue dialogue(
      Script(CardScriptWithEfGvd(), "EfGvdLength", {row.end}, "EfGvdBlock", 2, gvd).c_str());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
  if (row.size == 0) {
    EXPECT_EQ(reading.Boxes(), Texts({u"\r\nKeine gültigen Daten in EF GVD \r\n"}));
  } else {
    EXPECT_EQ(reading.Boxes(), Texts({}));
    EXPECT_TRUE(row.size < 300 || reading.Document(VsdKind::Gvd).xmlText == GvdDocument());
  }
}

INSTANTIATE_TEST_SUITE_P(Card, CardEfGvdLengthTest,
                         testing::ValuesIn(std::vector<OffsetRow>{
                             {"448 bytes", 0, 448, 448},
                             {"449 bytes are too many", 0, 449, 0},
                             {"one byte", 0, 1, 1},
                             {"no byte", 0, 0, 0},
                             {"FFFF", 0, 0xFFFF, 0},
                         }),
                         SentenceName());

// A file that holds fewer bytes than it tells: what there is goes to the decoder.
TEST(CardBlockTest, AFileThatEndsEarly) {
  const QByteArray pd = Compressed(PdDocument(), 450);
  const std::string block =
      Exchange("00B00002FC", pd.mid(0, 252)) + Exchange("00B000FEFC", pd.mid(252), "6282");
  Dialogue dialogue(CardScript().Replacing("PdBlock", block).Text().c_str());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
  EXPECT_EQ(reading.Boxes(), Texts({}));
  EXPECT_EQ(reading.Document(VsdKind::Pd).xmlText, PdDocument());
}

// The document is whole, and the length before it five bytes too long: the read ends with the file,
// and asks for nothing behind it, which the card would refuse.
TEST(CardBlockTest, ALengthThatIsTooLongByAFewBytes) {
  const QByteArray pd = Compressed(PdDocument());
  constexpr int Piece = 252;
  constexpr int TooMany = 5;
  const auto told = static_cast<int>(pd.size()) + TooMany;
  ASSERT_TRUE(told > Piece && told < 2 * Piece) << "two commands";
  const std::string length = Exchange("00B0000002", Number(told));
  const std::string block =
      Exchange("00B00002FC", pd.first(Piece)) +
      Exchange("00B000FE" + Number(told - Piece).toHex().last(2).toUpper().toStdString(),
               pd.mid(Piece), "6282");
  Dialogue dialogue(
      CardScript().Replacing("PdLength", length).Replacing("PdBlock", block).Text().c_str());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
  EXPECT_EQ(reading.Boxes(), Texts({}));
  EXPECT_EQ(reading.Document(VsdKind::Pd).xmlText, PdDocument());
}

struct DecoderRow {
  const char* part;
  VsdKind kind;
  bool inOwnFile;
  const char16_t* notDecompressed;
  const char16_t* noXml;

  friend std::ostream& operator<<(std::ostream& out, const DecoderRow& row) {
    return out << row.part;
  }
};

class CardDecoderResultTest : public testing::TestWithParam<DecoderRow> {
 protected:
  // A read in which the kind's block is another one, of the same size.
  void Read(const QString& text, bool isDamaged, bool isValidated) {
    const DecoderRow& row = GetParam();
    const ScriptParts intact = row.inOwnFile ? CardScriptWithEfGvd() : CardScript();
    const int size = row.kind == VsdKind::Gvd ? 300 : row.kind == VsdKind::Pd ? 600 : 500;
    const int offset = row.kind == VsdKind::Vd                      ? 8
                       : row.kind == VsdKind::Gvd && !row.inOwnFile ? 508
                                                                    : 2;
    const QByteArray block =
        (isDamaged ? Damaged(text) : Compressed(text)).leftJustified(size, '\0');
    Dialogue dialogue(intact.Replacing(row.part, BlockScript(offset, block)).Text().c_str());
    EgkReading reading(dialogue);
    reading.validation.isOn = isValidated;
    EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
    boxes_ = reading.Boxes();
    statusText_ = reading.egk.statusText;
    elements_ = reading.insured;
  }

  std::vector<QString> boxes_;
  QString statusText_;
  InsuredData elements_;
};

TEST_P(CardDecoderResultTest, NotDecompressed) {
  Read(PdDocument().first(200), true, false);
  EXPECT_EQ(boxes_, Texts({GetParam().notDecompressed}));
  EXPECT_EQ(statusText_, StatusVdText);
  EXPECT_EQ(elements_,
            SampleElements(GetParam().kind != VsdKind::Pd, GetParam().kind != VsdKind::Vd));
}

TEST_P(CardDecoderResultTest, NoXmlToValidate) {
  Read(QStringLiteral("<not closed"), false, true);
  EXPECT_EQ(boxes_, Texts({GetParam().noXml}));
  EXPECT_EQ(statusText_, StatusVdText);
}

TEST_P(CardDecoderResultTest, NoXmlIsNoErrorWithoutValidation) {
  Read(QStringLiteral("<not closed"), false, false);
  EXPECT_EQ(boxes_, Texts({}));
}

constexpr auto* VdNotDecompressed = u"Die Dekomprimierung der VD Daten war nicht erfolgreich!\r\n";
constexpr auto* PdNotDecompressed = u"Die Dekomprimierung der PD Daten war nicht erfolgreich!\r\n";
constexpr auto* GvdNotDecompressed =
    u"Die Dekomprimierung der GVD Daten war nicht erfolgreich!\r\n";

INSTANTIATE_TEST_SUITE_P(
    Card, CardDecoderResultTest,
    testing::Values(
        DecoderRow{"VdBlock", VsdKind::Vd, false, VdNotDecompressed, u"Error VD XML Daten!\r\n"},
        DecoderRow{"PdBlock", VsdKind::Pd, false, PdNotDecompressed, u"Error PD XML Daten!\r\n"},
        DecoderRow{"GvdBlock", VsdKind::Gvd, false, GvdNotDecompressed,
                   u"Error GVD XML Daten!\r\n"},
        DecoderRow{"EfGvdBlock", VsdKind::Gvd, true, GvdNotDecompressed,
                   u"Error GVD XML Daten!\r\n"}),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
