#include <gtest/gtest.h>

#include "egk/readers/egk_reading.h"
#include "egk/readers/sample_documents.h"
#include "support/dialogue.h"
#include "support/filled_script.h"

namespace kartocheck::test {
namespace {

// Blocks of these sizes make the pieces below.
std::string WithSampleBlocks(const char* script) {
  std::string filled = Filled(script, Compressed(VdDocument(), 700), QStringLiteral("VD"));
  filled = Filled(filled, Compressed(PdDocument(), 600), QStringLiteral("PD"));
  return Filled(filled, Compressed(GvdDocument(), 300), QStringLiteral("GVD"));
}

void ExpectWholeCard(const EgkReading& reading) {
  EXPECT_EQ(reading.insured, SampleElements());
  EXPECT_EQ(reading.egk.iccsn, SerialNumber);
  EXPECT_EQ(reading.egk.statusText, StatusVdText);
  EXPECT_EQ(reading.Document(VsdKind::Vd).xmlText, VdDocument());
  EXPECT_EQ(reading.Document(VsdKind::Pd).xmlText, PdDocument());
  EXPECT_EQ(reading.Document(VsdKind::Gvd).xmlText, GvdDocument());
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"PC (ASN-1)");
}

TEST(CardDialogueTest, GvdInTheContainer) {
  Dialogue dialogue(WithSampleBlocks(R"(
      open 1
      > 20 11 00 00 00                    # RESET CT
      < 90 00
      > 20 12 01 00 01 01                 # REQUEST ICC
      < 90 01
      > 20 11 01 00                       # RESET ICC
      < 90 01

      > 00 B0 82 00 00                    # EF.GDO
      < 5A 0A 80 27 60 01 01 00 00 00 00 17 90 00

      > 00 A4 04 0C 06 D2 76 00 00 01 02  # DF.HCA
      < 90 00
      > 00 A4 02 0C 02 D0 02              # EF.VD
      < 90 00
      > 00 B0 00 00 04                    # VD from 8 to 707
      < 00 08 02 C3 90 00
      > 00 B0 00 08 FC
      < {VD:0+252} 90 00
      > 00 B0 01 04 FC
      < {VD:252+252} 90 00
      > 00 B0 02 00 C4
      < {VD:504+196} 90 00

      > 00 A4 04 0C 06 D2 76 00 00 01 02  # DF.HCA
      < 90 00
      > 00 A4 02 0C 02 D0 01              # EF.PD
      < 90 00
      > 00 B0 00 00 02                    # 600 bytes
      < 02 58 90 00
      > 00 B0 00 02 FC
      < {PD:0+252} 90 00
      > 00 B0 00 FE FC
      < {PD:252+252} 90 00
      > 00 B0 01 FA 60
      < {PD:504+96} 90 00

      > 00 A4 04 0C 06 D2 76 00 00 01 02  # DF.HCA
      < 90 00
      > 00 A4 02 0C 02 D0 02              # EF.VD
      < 90 00
      > 00 B0 00 04 04                    # GVD from 708 to 1007
      < 02 C4 03 EF 90 00
      > 00 B0 02 C4 FC
      < {GVD:0+252} 90 00
      > 00 B0 03 C0 30
      < {GVD:252+48} 90 00

      > 00 A4 04 0C 06 D2 76 00 00 01 02  # DF.HCA
      < 90 00
      > 00 A4 02 0C 02 D0 0C              # EF.StatusVD
      < 90 00
      > 00 B0 00 00 19
      < 30 32 30 32 35 30 34 30 37 31 30 31 30 35 38 00 50 02 00 00 00 30 00 00 04 90 00

      > 20 11 00 00 00
      < 90 00
      close)")
                        .c_str());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.Dispatched(), ReadOutcome::Done);
  ExpectWholeCard(reading);
  EXPECT_EQ(reading.Boxes(), Texts({}));
  EXPECT_TRUE(reading.info.DataRead);
  EXPECT_TRUE(reading.info.EgkData);
  EXPECT_FALSE(reading.link.session.IsOpen());
}

TEST(CardDialogueTest, GvdInItsOwnFile) {
  Dialogue dialogue(WithSampleBlocks(R"(
      open 1
      > 20 11 00 00 00
      < 90 00
      > 20 12 01 00 01 01
      < 90 01
      > 20 11 01 00
      < 90 01

      > 00 B0 82 00 00
      < 5A 0A 80 27 60 01 01 00 00 00 00 17 90 00

      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 90 00
      > 00 A4 02 0C 02 D0 02
      < 90 00
      > 00 B0 00 00 04
      < 00 08 02 C3 90 00
      > 00 B0 00 08 FC
      < {VD:0+252} 90 00
      > 00 B0 01 04 FC
      < {VD:252+252} 90 00
      > 00 B0 02 00 C4
      < {VD:504+196} 90 00

      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 90 00
      > 00 A4 02 0C 02 D0 01
      < 90 00
      > 00 B0 00 00 02
      < 02 58 90 00
      > 00 B0 00 02 FC
      < {PD:0+252} 90 00
      > 00 B0 00 FE FC
      < {PD:252+252} 90 00
      > 00 B0 01 FA 60
      < {PD:504+96} 90 00

      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 90 00
      > 00 A4 02 0C 02 D0 02
      < 90 00
      > 00 B0 00 04 04                    # no GVD in the container
      < FF FF FF FF 90 00
      > 00 A4 02 0C 02 D0 03              # EF.GVD
      < 90 00
      > 00 B0 00 00 02                    # 300 bytes
      < 01 2C 90 00
      > 00 B0 00 02 FC
      < {GVD:0+252} 90 00
      > 00 B0 00 FE 30
      < {GVD:252+48} 90 00

      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 90 00
      > 00 A4 02 0C 02 D0 0C
      < 90 00
      > 00 B0 00 00 19
      < 30 32 30 32 35 30 34 30 37 31 30 31 30 35 38 00 50 02 00 00 00 30 00 00 04 90 00

      > 20 11 00 00 00
      < 90 00
      close)")
                        .c_str());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.Dispatched(), ReadOutcome::Done);
  ExpectWholeCard(reading);
  EXPECT_EQ(reading.Boxes(), Texts({}));
}

// What most of today's cards answer.
TEST(CardDialogueTest, ProtectedDataWithoutAccessRights) {
  Dialogue dialogue(WithSampleBlocks(R"(
      > 20 11 01 00
      < 90 01
      > 00 B0 82 00 00
      < 5A 0A 80 27 60 01 01 00 00 00 00 17 90 00
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 90 00
      > 00 A4 02 0C 02 D0 02
      < 90 00
      > 00 B0 00 00 04
      < 00 08 02 C3 90 00
      > 00 B0 00 08 FC
      < {VD:0+252} 90 00
      > 00 B0 01 04 FC
      < {VD:252+252} 90 00
      > 00 B0 02 00 C4
      < {VD:504+196} 90 00
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 90 00
      > 00 A4 02 0C 02 D0 01
      < 90 00
      > 00 B0 00 00 02
      < 02 58 90 00
      > 00 B0 00 02 FC
      < {PD:0+252} 90 00
      > 00 B0 00 FE FC
      < {PD:252+252} 90 00
      > 00 B0 01 FA 60
      < {PD:504+96} 90 00
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 90 00
      > 00 A4 02 0C 02 D0 02
      < 90 00
      > 00 B0 00 04 04
      < 00 00 00 00 90 00
      > 00 A4 02 0C 02 D0 03
      < 90 00
      > 00 B0 00 00 02
      < 69 82
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 90 00
      > 00 A4 02 0C 02 D0 0C
      < 90 00
      > 00 B0 00 00 19
      < 30 32 30 32 35 30 34 30 37 31 30 31 30 35 38 00 50 02 00 00 00 30 00 00 04 90 00)")
                        .c_str());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
  EXPECT_EQ(reading.insured, SampleElements());
  EXPECT_EQ(reading.Document(VsdKind::Gvd).xmlText, u"");
  EXPECT_EQ(reading.egk.statusText, StatusVdText);
  EXPECT_EQ(reading.Boxes(),
            Texts({u"Lesen geschützter Versichertendaten (EF.GVD) nicht möglich! \r\n"
                   u"Eine Freischaltung z.B. durch PIN Eingabe wird durch KartoCheck nicht "
                   u"unterstützt!\r\n"}));
  reading.ExpectInformationBoxes();
}

// A hand-held terminal in its stationary mode, or another terminal that does not let the card's
// application be selected.
constexpr const char* NothingAllowed = R"(
      > 20 11 01 00
      < 90 01
      > 00 B0 82 00 00
      < 69 00
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 69 00
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 69 00
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 69 00
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 69 00)";

TEST(CardDialogueTest, NothingAllowedByAHandheldInItsStationaryMode) {
  Dialogue dialogue(NothingAllowed);
  EgkReading reading(dialogue);
  reading.info.ManufacturerId = u"NVRHC";
  EXPECT_EQ(reading.FromCard(), EgkResult::Stopped);
  EXPECT_EQ(reading.Boxes(),
            Texts({u"Das Lesen einer EGK ist im stationären Mode nicht erlaubt!\r\n"}));
  reading.ExpectInformationBoxes();
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"of before");
}

TEST(CardDialogueTest, NothingAllowedByAnotherTerminal) {
  Dialogue dialogue(NothingAllowed);
  EgkReading reading(dialogue);
  reading.info.ManufacturerId = u"DENRV";
  EXPECT_EQ(reading.FromCard(), EgkResult::Stopped);
  EXPECT_EQ(reading.Boxes(), Texts({u"Fehler 0x6900 aufgetreten!\r\n"}));
  reading.ExpectInformationBoxes();
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"of before");
}

// The hand-held's own text belongs to a terminal that did not allow the protected data either.
TEST(CardDialogueTest, AHandheldThatRefusesTheLastSelectOnly) {
  Dialogue dialogue(R"(
      > 20 11 01 00
      < 90 01
      > 00 B0 82 00 00
      < 69 00
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 69 00
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 69 00
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 62 83
      > 00 A4 04 0C 06 D2 76 00 00 01 02
      < 69 00)");
  EgkReading reading(dialogue);
  reading.info.ManufacturerId = u"NVRHC";
  EXPECT_EQ(reading.FromCard(), EgkResult::Stopped);
  EXPECT_EQ(reading.Boxes(), Texts({u"Das DF.HCA (Health Care Application) ist deaktiviert!\r\n",
                                    u"Fehler 0x6900 aufgetreten!\r\n"}));
}

TEST(CardDialogueTest, AMemoryCardIsRefusedAtItsReset) {
  Dialogue dialogue(R"(
      > 20 11 01 00
      < 90 00)");
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.FromCard(), EgkResult::Stopped);
  EXPECT_EQ(reading.Boxes(), Texts({u"Reset Chipkarte war nicht erfolgreich!\r\n"}));
  reading.ExpectInformationBoxes();
}

}  // namespace
}  // namespace kartocheck::test
