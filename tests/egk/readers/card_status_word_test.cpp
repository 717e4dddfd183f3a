// What each command's failure does to the read of a card: its message, the result, and the sections
// that still run.

#include <gtest/gtest.h>

#include "egk/readers/egk_reading.h"
#include "egk/readers/sample_documents.h"
#include "egk/readers/script_parts.h"
#include "support/dialogue.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

enum class Goes { On, ToNextSection, Nowhere };

struct CardRow {
  const char* sentence;
  const char* part;         // whose first command fails
  const char* answers;      // instead of the intact ones
  const char16_t* message;  // nullptr: none
  Goes goes;

  friend std::ostream& operator<<(std::ostream& out, const CardRow& row) {
    return out << row.sentence;
  }
};

// Messages.
constexpr auto* None = static_cast<const char16_t*>(nullptr);
constexpr auto* ResetFailed = u"Kommando Reset Chipkarte war nicht erfolgreich!\r\n";
constexpr auto* ResetRefused = u"Reset Chipkarte war nicht erfolgreich!\r\n";
constexpr auto* HcaFailed = u"Kommando Select DF HCA war nicht erfolgreich!\r\n";
constexpr auto* HcaRefused = u"Select DF HCA war nicht erfolgreich!\r\n";
constexpr auto* HcaNotOnCard =
    u"Keine Gesundheitsanwendung \r\nDF.HCA (Health Care Application) \r\n"
    u"auf der Karte gefunden!\r\n\r\n";
constexpr auto* HcaDeactivated = u"Das DF.HCA (Health Care Application) ist deaktiviert!\r\n";
constexpr auto* SelectVdFailed = u"Kommando Select EF VD war nicht erfolgreich!\r\n";
constexpr auto* SelectVdRefused = u"Select EF VD war nicht erfolgreich!\r\n";
constexpr auto* ReadVdFailed = u"Read EF VD war nicht erfolgreich!\r\n";
constexpr auto* NoVd = u"\r\nKeine gültigen Daten in EF VD \r\n";
constexpr auto* VdNoXml = u"Error VD XML Daten!\r\n";
constexpr auto* SelectPdFailed = u"Kommando Select EF PD war nicht erfolgreich!\r\n";
constexpr auto* SelectPdRefused = u"Select EF PD war nicht erfolgreich!\r\n";
constexpr auto* ReadPdFailed = u"Read EF PD war nicht erfolgreich!\r\n";
constexpr auto* NoPd = u"\r\nKeine gültigen Daten in EF PD \r\n";
constexpr auto* PdNoXml = u"Error PD XML Daten!\r\n";
constexpr auto* ReadContainerGvdFailed =
    u"Read GVD Daten aus EF VD Container war nicht erfolgreich!\r\n";
constexpr auto* NoContainerGvd = u"\r\nKeine gültigen GVD Daten im EF VD Container! \r\n";
constexpr auto* GvdNoXml = u"Error GVD XML Daten!\r\n";
constexpr auto* SelectGvdFailed = u"Kommando Select EF GVD war nicht erfolgreich!\r\n";
constexpr auto* SelectGvdRefused = u"Select EF GVD war nicht erfolgreich!\r\n";
constexpr auto* ReadGvdFailed = u"Read EF GVD war nicht erfolgreich!\r\n";
constexpr auto* GvdProtected =
    u"Lesen geschützter Versichertendaten (EF.GVD) nicht möglich! \r\n"
    u"Eine Freischaltung z.B. durch PIN Eingabe wird durch KartoCheck nicht unterstützt!\r\n";
constexpr auto* NoGvd = u"\r\nKeine gültigen Daten in EF GVD \r\n";
constexpr auto* NotAllowed = u"Fehler 0x6900 aufgetreten!\r\n";

// What the slot holds of an intact read, but for what the row's part would have brought.
void ExpectAllBut(const CardRow& row, const std::string& section, const EgkReading& reading) {
  const bool isStopped = row.goes == Goes::Nowhere;
  const auto failed = [&](const char* each) {
    return row.goes == Goes::ToNextSection && section == each;
  };
  const bool withVd = !isStopped && !failed("Vd");
  const bool withPd = !isStopped && !failed("Pd");
  if (isStopped) {
    EXPECT_EQ(reading.insured, InsuredData{});
    EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"of before");
    EXPECT_EQ(reading.egk.statusText, u"");
    return;
  }
  EXPECT_EQ(reading.insured, SampleElements(withPd, withVd));
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"PC (ASN-1)");
  EXPECT_EQ(reading.Document(VsdKind::Vd).xmlText, withVd ? VdDocument() : QString());
  EXPECT_EQ(reading.Document(VsdKind::Pd).xmlText, withPd ? PdDocument() : QString());
  EXPECT_EQ(reading.Document(VsdKind::Gvd).xmlText, failed("Gvd") ? QString() : GvdDocument());
  EXPECT_EQ(reading.egk.statusText, failed("Status") ? QString() : StatusVdText.toString());
  EXPECT_EQ(reading.egk.iccsn,
            std::string_view(row.part) == "Gdo" ? QString() : SerialNumber.toString());
}

void ExpectRow(const ScriptParts& intact, const CardRow& row) {
  ScriptParts script = intact.Answering(row.part, row.answers);
  if (row.goes == Goes::ToNextSection) script = script.WithoutRestOfSection(row.part);
  if (row.goes == Goes::Nowhere) script = script.WithoutRest(row.part);
  Dialogue dialogue(script.Text().c_str());
  EgkReading reading(dialogue);

  EXPECT_EQ(reading.FromCard(),
            row.goes == Goes::Nowhere ? EgkResult::Stopped : EgkResult::Finished);
  std::vector<QString> expected;
  if (row.message != None) expected.push_back(QString::fromUtf16(row.message));
  EXPECT_EQ(reading.Boxes(), expected);
  reading.ExpectInformationBoxes();
  ExpectAllBut(row, intact.SectionOf(row.part), reading);
}

class CardStatusWordTest : public testing::TestWithParam<CardRow> {};

TEST_P(CardStatusWordTest, MessageResultAndSections) {
  ExpectRow(CardScript(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Card, CardStatusWordTest,
    testing::ValuesIn(std::vector<CardRow>{
        {"RESET ICC fails", "Reset", "< -> -10", ResetFailed, Goes::Nowhere},
        {"RESET ICC without status word", "Reset", "< 90", ResetFailed, Goes::Nowhere},
        {"RESET ICC finds a memory card", "Reset", "< 90 00", ResetRefused, Goes::Nowhere},
        {"RESET ICC finds no card", "Reset", "< 62 00", ResetRefused, Goes::Nowhere},
        {"RESET ICC is refused", "Reset", "< 64 00", ResetRefused, Goes::Nowhere},

        {"EF.GDO fails", "Gdo", "< -> -8", None, Goes::On},
        {"EF.GDO is not found", "Gdo", "< 6A 82", None, Goes::On},
        {"EF.GDO answers 6282", "Gdo", "< 5A 0A 11 11 11 11 11 11 11 11 11 11 62 82", None,
         Goes::On},
        {"EF.GDO answers 6900", "Gdo", "< 69 00", None, Goes::On},
        {"EF.GDO is empty", "Gdo", "< 90 00", None, Goes::On},

        {"DF.HCA of the VD fails", "VdHca", "< -> -10", HcaFailed, Goes::Nowhere},
        {"DF.HCA of the VD without status word", "VdHca", "<", HcaFailed, Goes::Nowhere},
        {"DF.HCA of the VD is not on the card", "VdHca", "< 6A 82", HcaNotOnCard, Goes::Nowhere},
        {"DF.HCA of the VD is deactivated", "VdHca", "< 62 83", HcaDeactivated,
         Goes::ToNextSection},
        {"DF.HCA of the VD is not allowed", "VdHca", "< 69 00", None, Goes::ToNextSection},
        {"DF.HCA of the VD answers 6982", "VdHca", "< 69 82", HcaRefused, Goes::ToNextSection},
        {"DF.HCA of the VD answers 6D00", "VdHca", "< 6D 00", HcaRefused, Goes::ToNextSection},
        {"DF.HCA of the VD answers 6282", "VdHca", "< 62 82", HcaRefused, Goes::ToNextSection},
        {"DF.HCA of the VD answers 9001", "VdHca", "< 90 01", HcaRefused, Goes::ToNextSection},

        {"SELECT EF.VD fails", "VdSelect", "< -> -10", SelectVdFailed, Goes::ToNextSection},
        {"SELECT EF.VD answers 6A82", "VdSelect", "< 6A 82", SelectVdRefused, Goes::ToNextSection},
        {"SELECT EF.VD answers 6283", "VdSelect", "< 62 83", SelectVdRefused, Goes::ToNextSection},
        {"SELECT EF.VD answers 6900", "VdSelect", "< 69 00", SelectVdRefused, Goes::ToNextSection},
        {"SELECT EF.VD answers 9001", "VdSelect", "< 90 01", SelectVdRefused, Goes::ToNextSection},

        {"the VD's offsets fail", "VdOffsets", "< -> -10", ReadVdFailed, Goes::ToNextSection},
        {"the VD's offsets answer 6982", "VdOffsets", "< 69 82", ReadVdFailed, Goes::ToNextSection},
        {"the VD's offsets answer 6A82", "VdOffsets", "< 6A 82", ReadVdFailed, Goes::ToNextSection},
        {"the VD's offsets answer 6B00", "VdOffsets", "< 6B 00", ReadVdFailed, Goes::ToNextSection},
        {"the VD's offsets answer 9001", "VdOffsets", "< 00 08 01 FB 90 01", ReadVdFailed,
         Goes::ToNextSection},
        {"the VD's offsets end too early", "VdOffsets", "< 00 08 01 62 82", ReadVdFailed,
         Goes::ToNextSection},
        {"the VD's offsets are missing", "VdOffsets", "< 90 00", ReadVdFailed, Goes::ToNextSection},
        {"the VD's offsets answer 6282 with all bytes", "VdOffsets", "< 00 08 01 FB 62 82", None,
         Goes::On},
        {"the VD's offsets are 0", "VdOffsets", "< 00 00 00 00 90 00", NoVd, Goes::ToNextSection},

        {"the VD fails", "VdBlock", "< -> -10", ReadVdFailed, Goes::ToNextSection},
        {"the VD answers 6982", "VdBlock", "< 69 82", ReadVdFailed, Goes::ToNextSection},
        {"the VD answers 6B00", "VdBlock", "< 6B 00", ReadVdFailed, Goes::ToNextSection},
        {"the VD fails at its second piece", "VdBlock", "< 1F 8B 90 00\n> 00 B0 00 0A FC\n< -> -10",
         ReadVdFailed, Goes::ToNextSection},
        {"the VD is empty", "VdBlock", "< 62 82", VdNoXml, Goes::ToNextSection},

        {"DF.HCA of the PD fails", "PdHca", "< -> -10", HcaFailed, Goes::Nowhere},
        {"DF.HCA of the PD is not on the card", "PdHca", "< 6A 82", HcaNotOnCard, Goes::Nowhere},
        {"DF.HCA of the PD is deactivated", "PdHca", "< 62 83", HcaDeactivated,
         Goes::ToNextSection},
        {"DF.HCA of the PD is not allowed", "PdHca", "< 69 00", None, Goes::ToNextSection},
        {"DF.HCA of the PD answers 6F00", "PdHca", "< 6F 00", HcaRefused, Goes::ToNextSection},

        {"SELECT EF.PD fails", "PdSelect", "< -> -127", SelectPdFailed, Goes::ToNextSection},
        {"SELECT EF.PD answers 6A82", "PdSelect", "< 6A 82", SelectPdRefused, Goes::ToNextSection},
        {"SELECT EF.PD answers 6283", "PdSelect", "< 62 83", SelectPdRefused, Goes::ToNextSection},
        {"SELECT EF.PD answers 6900", "PdSelect", "< 69 00", SelectPdRefused, Goes::ToNextSection},

        {"the PD's length fails", "PdLength", "< -> -10", ReadPdFailed, Goes::ToNextSection},
        {"the PD's length answers 6982", "PdLength", "< 69 82", ReadPdFailed, Goes::ToNextSection},
        {"the PD's length answers 6B00", "PdLength", "< 6B 00", ReadPdFailed, Goes::ToNextSection},
        {"the PD's length ends too early", "PdLength", "< 02 62 82", ReadPdFailed,
         Goes::ToNextSection},
        {"the PD's length answers 6282 with all bytes", "PdLength", "< 02 58 62 82", None,
         Goes::On},
        {"the PD's length is 0", "PdLength", "< 00 00 90 00", NoPd, Goes::ToNextSection},
        {"the PD's length is FFFF", "PdLength", "< FF FF 90 00", NoPd, Goes::ToNextSection},

        {"the PD fails", "PdBlock", "< -> -10", ReadPdFailed, Goes::ToNextSection},
        {"the PD answers 6982", "PdBlock", "< 69 82", ReadPdFailed, Goes::ToNextSection},
        {"the PD answers 6A82", "PdBlock", "< 6A 82", ReadPdFailed, Goes::ToNextSection},
        {"the PD is empty", "PdBlock", "< 90 00", PdNoXml, Goes::ToNextSection},

        {"DF.HCA of the GVD fails", "GvdHca", "< -> -10", HcaFailed, Goes::ToNextSection},
        {"DF.HCA of the GVD is not on the card", "GvdHca", "< 6A 82", HcaNotOnCard, Goes::Nowhere},
        {"DF.HCA of the GVD is deactivated", "GvdHca", "< 62 83", HcaDeactivated,
         Goes::ToNextSection},
        {"DF.HCA of the GVD is not allowed", "GvdHca", "< 69 00", None, Goes::ToNextSection},
        {"DF.HCA of the GVD answers 6985", "GvdHca", "< 69 85", HcaRefused, Goes::ToNextSection},

        {"SELECT EF.VD for the GVD fails", "GvdSelect", "< -> -10", SelectVdFailed,
         Goes::ToNextSection},
        {"SELECT EF.VD for the GVD answers 6A82", "GvdSelect", "< 6A 82", SelectVdRefused,
         Goes::ToNextSection},

        {"the GVD's offsets fail", "GvdOffsets", "< -> -10", ReadVdFailed, Goes::ToNextSection},
        {"the GVD's offsets answer 6982", "GvdOffsets", "< 69 82", ReadVdFailed,
         Goes::ToNextSection},
        {"the GVD's offsets end too early", "GvdOffsets",
         "< 01 FC 03 90 00\n> 00 B0 00 07 01\n< 62 82", ReadVdFailed, Goes::ToNextSection},
        {"the GVD's offsets are FFFF and 0000", "GvdOffsets", "< FF FF 00 00 90 00", NoContainerGvd,
         Goes::ToNextSection},

        {"the container's GVD fails", "GvdBlock", "< -> -10", ReadContainerGvdFailed,
         Goes::ToNextSection},
        {"the container's GVD answers 6982", "GvdBlock", "< 69 82", ReadContainerGvdFailed,
         Goes::ToNextSection},
        {"the container's GVD answers 6B00", "GvdBlock", "< 6B 00", ReadContainerGvdFailed,
         Goes::ToNextSection},
        {"the container's GVD is empty", "GvdBlock", "< 62 82", GvdNoXml, Goes::ToNextSection},

        {"DF.HCA of the status fails", "StatusHca", "< -> -10", None, Goes::ToNextSection},
        {"DF.HCA of the status is not on the card", "StatusHca", "< 6A 82", None,
         Goes::ToNextSection},
        {"DF.HCA of the status is deactivated", "StatusHca", "< 62 83", None, Goes::ToNextSection},
        {"DF.HCA of the status answers 6D00", "StatusHca", "< 6D 00", None, Goes::ToNextSection},
        {"DF.HCA of the status is not allowed", "StatusHca", "< 69 00", NotAllowed, Goes::Nowhere},

        {"SELECT EF.StatusVD fails", "StatusSelect", "< -> -10", None, Goes::ToNextSection},
        {"SELECT EF.StatusVD answers 6A82", "StatusSelect", "< 6A 82", None, Goes::ToNextSection},
        {"SELECT EF.StatusVD answers 6900", "StatusSelect", "< 69 00", None, Goes::ToNextSection},

        {"EF.StatusVD fails", "StatusRead", "< -> -10", None, Goes::ToNextSection},
        {"EF.StatusVD answers 6982", "StatusRead", "< 69 82", None, Goes::ToNextSection},
        {"EF.StatusVD answers 6B00", "StatusRead", "< 6B 00", None, Goes::ToNextSection},
        {"EF.StatusVD ends after 24 bytes", "StatusRead",
         "< 30 32 30 32 35 30 34 30 37 31 30 31 30 35 38 00 50 02 00 00 00 30 00 00 62 82", None,
         Goes::ToNextSection},
        {"EF.StatusVD answers 6282 with all bytes", "StatusRead",
         "< 30 32 30 32 35 30 34 30 37 31 30 31 30 35 38 00 50 02 00 00 00 30 00 00 04 62 82", None,
         Goes::On},
    }),
    SentenceName());

class CardEfGvdStatusWordTest : public testing::TestWithParam<CardRow> {};

TEST_P(CardEfGvdStatusWordTest, MessageResultAndSections) {
  ExpectRow(CardScriptWithEfGvd(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Card, CardEfGvdStatusWordTest,
    testing::ValuesIn(std::vector<CardRow>{
        {"offsets 0 lead to EF.GVD", "GvdOffsets", "< 00 00 00 00 90 00", None, Goes::On},
        {"offsets FFFF lead to EF.GVD", "GvdOffsets", "< FF FF FF FF 90 00", None, Goes::On},

        {"SELECT EF.GVD fails", "EfGvdSelect", "< -> -10", SelectGvdFailed, Goes::ToNextSection},
        {"SELECT EF.GVD answers 6A82", "EfGvdSelect", "< 6A 82", SelectGvdRefused,
         Goes::ToNextSection},
        {"SELECT EF.GVD answers 6982", "EfGvdSelect", "< 69 82", SelectGvdRefused,
         Goes::ToNextSection},
        {"SELECT EF.GVD answers 6900", "EfGvdSelect", "< 69 00", SelectGvdRefused,
         Goes::ToNextSection},

        {"the GVD's length needs access rights", "EfGvdLength", "< 69 82", GvdProtected,
         Goes::ToNextSection},
        {"the GVD's length fails", "EfGvdLength", "< -> -10", ReadGvdFailed, Goes::ToNextSection},
        {"the GVD's length answers 6A82", "EfGvdLength", "< 6A 82", ReadGvdFailed,
         Goes::ToNextSection},
        {"the GVD's length answers 6985", "EfGvdLength", "< 69 85", ReadGvdFailed,
         Goes::ToNextSection},
        {"the GVD's length ends too early", "EfGvdLength", "< 01 62 82", ReadGvdFailed,
         Goes::ToNextSection},
        {"the GVD's length is 0", "EfGvdLength", "< 00 00 90 00", NoGvd, Goes::ToNextSection},

        {"the GVD fails", "EfGvdBlock", "< -> -10", ReadGvdFailed, Goes::ToNextSection},
        {"the GVD needs access rights", "EfGvdBlock", "< 69 82", ReadGvdFailed,
         Goes::ToNextSection},
        {"the GVD answers 6B00", "EfGvdBlock", "< 6B 00", ReadGvdFailed, Goes::ToNextSection},
        {"the GVD is empty", "EfGvdBlock", "< 62 82", GvdNoXml, Goes::ToNextSection},
    }),
    SentenceName());

// The serial number is as long as its data object says.
TEST(CardSerialNumberTest, LengthsOfTheDataObject) {
  const auto serialNumber = [](const char* answer) {
    Dialogue dialogue(CardScript()
                          .Answering("Gdo", answer)
                          .WithoutRest("VdHca")
                          .Answering("VdHca", "< 6A 82")
                          .Text()
                          .c_str());
    EgkReading reading(dialogue);
    EXPECT_EQ(reading.FromCard(), EgkResult::Stopped);
    return reading.egk.iccsn;
  };
  EXPECT_EQ(serialNumber("< 5A 0A 80 27 60 01 01 00 00 00 00 17 90 00"), SerialNumber);
  EXPECT_EQ(serialNumber("< 5A 0A 80 27 60 01 01 00 00 00 00 17 FF FF 90 00"), SerialNumber);
  EXPECT_EQ(serialNumber("< 5A 02 0A F0 60 90 00"), u"0AF0");
  EXPECT_EQ(serialNumber("< 5A 00 80 27 90 00"), u"");
  EXPECT_EQ(serialNumber("< 5A 90 00"), u"");
  // A length past the end takes what there is, and nothing of the status word.
  EXPECT_EQ(serialNumber("< 5A FF 80 27 90 00"), u"8027");
  EXPECT_EQ(serialNumber("< 5A 0A 90 00"), u"");
}

// An exchange that failed tells nothing of the serial number; another status word does.
TEST(CardSerialNumberTest, IsKeptOnlyOfAFailedExchange) {
  for (const auto& [answer, expected] :
       {std::pair{"< -> -10", u"of before"}, std::pair{"< 6A 82", u""}}) {
    Dialogue dialogue(CardScript().Answering("Gdo", answer).Text().c_str());
    EgkReading reading(dialogue);
    reading.egk.iccsn = QStringLiteral("of before");
    EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
    EXPECT_EQ(reading.egk.iccsn, expected);
  }
}

TEST(CardStatusTextTest, EachByteHasTwoDigits) {
  Dialogue dialogue(CardScript()
                        .Answering("StatusRead",
                                   "< 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 9F A0 F0 "
                                   "FF 07 00 00 07 90 00")
                        .Text()
                        .c_str());
  EgkReading reading(dialogue);
  EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
  EXPECT_EQ(reading.egk.statusText, u"000102030405060708090A0B0C0D0E0F109FA0F0FF07000007");
  EXPECT_EQ(reading.egk.statusText.size(), 50);
}

// A status that could not be read does not leave that of an earlier card.
TEST(CardStatusTextTest, IsEmptiedBeforeItIsRead) {
  for (const char* part : {"StatusHca", "StatusSelect", "StatusRead"}) {
    Dialogue dialogue(
        CardScript().Answering(part, "< 6D 00").WithoutRestOfSection(part).Text().c_str());
    EgkReading reading(dialogue);
    reading.egk.statusText = QStringLiteral("of before");
    EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
    EXPECT_EQ(reading.egk.statusText, u"") << part;
  }
}

// From a card in a terminal that is flagged mobile the supplement is taken too.
TEST(CardStoreTest, NumberOfElements) {
  for (const bool isMobile : {false, true}) {
    Dialogue dialogue(CardScript().Text().c_str());
    EgkReading reading(dialogue);
    reading.info.Reset95 = isMobile;
    for (const Element element : {Element::Checksum, Element::ReadingDate, Element::ApprovalNumber,
                                  Element::ChecksumSupplement}) {
      reading.insured[element] = QStringLiteral("of before");
    }
    EXPECT_EQ(reading.FromCard(), EgkResult::Finished);
    InsuredData expected = SampleElements();
    if (!isMobile) {
      for (const Element element :
           {Element::ReadingDate, Element::ApprovalNumber, Element::ChecksumSupplement}) {
        expected[element] = QStringLiteral("of before");
      }
    }
    EXPECT_EQ(reading.insured, expected);
  }
}

// A read that stops late has decompressed documents already and stores nothing of them.
TEST(CardStoreTest, NothingOfAReadThatStopped) {
  Dialogue dialogue(
      CardScript().Answering("StatusHca", "< 69 00").WithoutRest("StatusHca").Text().c_str());
  EgkReading reading(dialogue);
  reading.insured[Element::Town] = QStringLiteral("of before");
  EXPECT_EQ(reading.FromCard(), EgkResult::Stopped);
  InsuredData expected;
  expected[Element::Town] = QStringLiteral("of before");
  EXPECT_EQ(reading.insured, expected);
}

}  // namespace
}  // namespace kartocheck::test
