#include <gtest/gtest.h>

#include "egk/readers/egk_reading.h"
#include "egk/readers/sample_documents.h"
#include "support/dialogue.h"
#include "support/filled_script.h"

namespace kartocheck::test {
namespace {

InsuredData WithStatusData(QStringView approvalNumber, QStringView checksum) {
  InsuredData elements = SampleElements();
  elements[Element::ReadingDate] = QStringLiteral("05.03.2024");
  elements[Element::ApprovalNumber] = approvalNumber.toString();
  elements[Element::ChecksumSupplement] = checksum.toString();
  return elements;
}

// EF.PD and EF.VD of a record hold their data and nothing behind them.
std::string WithSampleFiles(const char* script, bool gvdInContainer) {
  const QByteArray gvd = Compressed(GvdDocument(), 300);
  const QByteArray vd =
      Container(Compressed(VdDocument(), 700), gvdInContainer ? gvd : QByteArray());
  std::string filled = Filled(script, vd, QStringLiteral("VD"));
  filled = Filled(filled, FileWithLength(Compressed(PdDocument(), 600)), QStringLiteral("PD"));
  return Filled(filled, FileWithLength(gvd), QStringLiteral("GVD"));
}

TEST(MobileDialogueTest, PlainRecord) {
  Dialogue dialogue(WithSampleFiles(R"(
      open 1
      > 20 11 00 00 00                    # RESET CT
      < 95 00
      > 20 12 01 00 01 01                 # REQUEST ICC
      < 90 01

      > 00 A4 04 0C 06 D2 76 00 00 01 02  # DF.HCA
      < 90 00
      > 00 B0 8C 00 00                    # EF.StatusVD, 69 bytes
      < A0 19 30 32 30 32 35 30 34 30 37 31 30 31 30 35 38 00 50 02 00 00 00 30 00 00 04 91 08 30 35 30 33 32 30 32 34 92 1B 44 45 4E 52 56 3B 44 45 4D 4F 54 45 52 4D 3B 31 2E 32 2E 33 3A 34 2E 35 2E 36 20 93 01 3F 90 00
      > 00 B0 81 00 00                    # EF.PD in one answer
      < {PD:0+602} 90 00
      > 00 B0 82 00 00                    # EF.VD in one answer
      < {VD:0+1008} 90 00
      > 00 0E 00 00                       # ERASE BINARY
      < 90 00
      > 20 15 01 00 01 00                 # EJECT ICC
      < 90 00

      > 20 11 00 00 00
      < 95 00
      close)",
                                    true)
                        .c_str());
  EgkReading reading(dialogue);
  reading.link.dialogs.answers = {Answer::Yes};
  EXPECT_EQ(reading.Dispatched(), ReadOutcome::Done);

  EXPECT_EQ(reading.insured, WithStatusData(u"DENRV;DEMOTERM;1.2.3:4.5.6", u"3F"));
  EXPECT_EQ(reading.Document(VsdKind::Pd).xmlText, PdDocument());
  EXPECT_EQ(reading.Document(VsdKind::Vd).xmlText, VdDocument());
  EXPECT_EQ(reading.Document(VsdKind::Gvd).xmlText, GvdDocument());
  EXPECT_EQ(reading.egk.stored.statusText, StatusVdText);
  EXPECT_EQ(reading.egk.stored.storedDate, u"05032024");
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"PC (ASN-1)");
  EXPECT_TRUE(reading.info.DataRead);
  EXPECT_TRUE(reading.info.EgkData);
  EXPECT_EQ(reading.Boxes().size(), 1U);  // the question
  EXPECT_FALSE(reading.link.session.IsOpen());
}

// A terminal that keeps the extended record, EF.PD and EF.VD in pieces of 256 bytes.
TEST(MobileDialogueTest, ExtendedRecord) {
  Dialogue dialogue(WithSampleFiles(R"(
      open 1
      > 20 11 00 00 00
      < 95 01
      > 20 12 01 00 01 01
      < 90 01

      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 90 00
      > 00 B0 8C 00 00                    # EF.StatusVD, 80 bytes
      < A0 19 30 32 30 32 35 30 34 30 37 31 30 31 30 35 38 00 50 02 00 00 00 30 00 00 04 91 08 30 35 30 33 32 30 32 34 92 26 44 45 4E 52 56 3B 44 45 4D 4F 54 45 52 4D 3B 30 30 31 2E 30 30 32 2E 30 30 33 3A 30 30 34 2E 30 30 35 2E 30 30 36 93 01 22 90 01
      > 00 B0 81 00 00                    # EF.PD
      < {PD:0+256} 90 00
      > 00 B0 01 00 00
      < {PD:256+256} 90 00
      > 00 B0 02 00 00
      < {PD:512+90} 90 00
      > 00 B0 82 00 00                    # EF.VD
      < {VD:0+256} 90 00
      > 00 B0 01 00 00
      < {VD:256+256} 90 00
      > 00 B0 02 00 00
      < {VD:512+196} 62 82
      > 00 B0 83 00 00                    # EF.GVD
      < {GVD:0+302} 90 00
      > 00 0E 00 00
      < 90 00
      > 20 15 01 00 01 00
      < 90 00

      > 20 11 00 00 00
      < 95 01
      close)",
                                    false)
                        .c_str());
  EgkReading reading(dialogue);
  reading.info.Reset95 = true;
  reading.info.Reset9501 = true;
  reading.link.dialogs.answers = {Answer::Yes};
  EXPECT_EQ(reading.Dispatched(), ReadOutcome::Done);

  EXPECT_EQ(reading.insured, WithStatusData(u"DENRV;DEMOTERM;001.002.003:004.005.006", u"22"));
  EXPECT_EQ(reading.Document(VsdKind::Pd).xmlText, PdDocument());
  EXPECT_EQ(reading.Document(VsdKind::Vd).xmlText, VdDocument());
  EXPECT_EQ(reading.Document(VsdKind::Gvd).xmlText, GvdDocument());
  EXPECT_EQ(reading.egk.stored.statusText, StatusVdText);
  EXPECT_EQ(reading.Boxes().size(), 1U);
}

}  // namespace
}  // namespace kartocheck::test
