#include "egk/egk_data.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace kartocheck {
namespace {

TEST(EgkData, IsEmptyAndUnvalidatedAtFirst) {
  const EgkData egk;
  EXPECT_TRUE(egk.IsEmpty());
  for (const VsdDocument& document : egk.documents) EXPECT_TRUE(document.notValidated);
}

TEST(EgkData, ExpectsTheObjectsOfAStatusRecord) {
  const StatusDescriptor stored;
  EXPECT_TRUE(stored.IsEmpty());
  EXPECT_EQ(stored.status.tag + stored.status.length, QStringLiteral("A019"));
  EXPECT_EQ(stored.readingDate.tag + stored.readingDate.length, QStringLiteral("9108"));
  EXPECT_EQ(stored.approval.tag + stored.approval.length, QStringLiteral("921B"));
  EXPECT_EQ(stored.checksum.tag + stored.checksum.length, QStringLiteral("9301"));
}

struct Piece {
  const char* sentence;
  std::function<void(EgkData&)> write;
};

class EgkDataPiece : public testing::TestWithParam<Piece> {};

TEST_P(EgkDataPiece, IsSomethingUntilCleared) {
  EgkData egk;
  GetParam().write(egk);
  EXPECT_FALSE(egk.IsEmpty());
  EXPECT_EQ(egk.HoldsData(), egk.iccsn.isEmpty()) << "a serial number is no data, all else is";
  egk.Clear();
  EXPECT_TRUE(egk.IsEmpty());
  EXPECT_FALSE(egk.HoldsData());
}

INSTANTIATE_TEST_SUITE_P(
    Pieces, EgkDataPiece,
    testing::Values(
        Piece{"SerialNumber", [](EgkData& egk) { egk.iccsn = QStringLiteral("80"); }},
        Piece{"CardStatus", [](EgkData& egk) { egk.statusText = QStringLiteral("30"); }},
        Piece{"XmlText",
              [](EgkData& egk) { egk.documents[VsdKind::Vd].xmlText = QStringLiteral("<a/>"); }},
        Piece{
            "ValidationText",
            [](EgkData& egk) { egk.documents[VsdKind::Pd].validationText = QStringLiteral("!"); }},
        Piece{"FieldName",
              [](EgkData& egk) {
                egk.documents[VsdKind::Gvd].fields[3].name = QStringLiteral("DMP");
              }},
        Piece{"FieldValue",
              [](EgkData& egk) {
                egk.documents[VsdKind::Pd].fields[FieldTableRows - 1].value = QStringLiteral("1");
              }},
        Piece{"StoredStatusObject",
              [](EgkData& egk) { egk.stored.status.tlv = QStringLiteral("A019"); }},
        Piece{"StoredStatus", [](EgkData& egk) { egk.stored.statusText = QStringLiteral("30"); }},
        Piece{"DateObject",
              [](EgkData& egk) { egk.stored.readingDate.tlv = QStringLiteral("9108"); }},
        Piece{"StoredDate", [](EgkData& egk) { egk.stored.storedDate = QStringLiteral("0"); }},
        Piece{"ConvertedDate",
              [](EgkData& egk) { egk.stored.convertedDate = QStringLiteral("0"); }},
        Piece{"ApprovalObject",
              [](EgkData& egk) { egk.stored.approval.tlv = QStringLiteral("921B"); }},
        Piece{"Approval", [](EgkData& egk) { egk.stored.approvalNumber = QStringLiteral("A"); }},
        Piece{"ChecksumObject",
              [](EgkData& egk) { egk.stored.checksum.tlv = QStringLiteral("9301"); }},
        Piece{"Checksum", [](EgkData& egk) { egk.stored.checksumText = QStringLiteral("3F"); }}),
    [](const auto& row) { return std::string(row.param.sentence); });

}  // namespace
}  // namespace kartocheck
