// What each command's failure does to the read of a stored record: its messages, the result, and
// what still runs.

#include <gtest/gtest.h>

#include "egk/readers/egk_reading.h"
#include "egk/readers/sample_documents.h"
#include "egk/readers/script_parts.h"
#include "support/dialogue.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

enum class Terminal { Plain, Extended };

std::ostream& operator<<(std::ostream& out, Terminal terminal) {
  return out << (terminal == Terminal::Extended ? "extended record: " : "plain record: ");
}

ScriptParts RecordScript(Terminal terminal) {
  return terminal == Terminal::Extended ? ExtendedRecordScript() : PlainRecordScript();
}

// A read of a stored record from a terminal of the kind.
class RecordReading {
 public:
  RecordReading(const ScriptParts& script, Terminal terminal)
      : dialogue_(script.Text().c_str()), reading(dialogue_) {
    reading.info.Reset95 = true;
    reading.info.Reset9501 = terminal == Terminal::Extended;
  }

 private:
  Dialogue dialogue_;

 public:
  EgkReading reading;
};

// Messages.
constexpr auto* None = static_cast<const char16_t*>(nullptr);
constexpr auto* HcaFailed = u"Das Kommando Select DF HCA war nicht erfolgreich!";
constexpr auto* HcaRefused = u"Select DF HCA war nicht erfolgreich!\r\n";
constexpr auto* HcaNotOnCard =
    u"Keine Gesundheitsanwendung \r\nDF.HCA (Health Care Application) \r\n"
    u"auf der Karte gefunden!\r\n\r\n";
constexpr auto* HcaDeactivated = u"Das DF.HCA (Health Care Application) ist deaktiviert!\r\n";
constexpr auto* NotReleased = u"Ist die HBA/SMC-B Karte im Terminal freigeschaltet?";
constexpr auto* NotInserted = u"Ist die HBA/SMC-B Karte im Terminal gesteckt und freigeschaltet?";
constexpr auto* StatusFailed = u"Das Kommando Read Status VD war nicht erfolgreich!";
constexpr auto* StatusNote = u"\r\nRead EF Status VD  war nicht erfolgreich!";
constexpr auto* PdNote = u"\r\nRead EF PD war nicht erfolgreich!";
constexpr auto* NoPdNote = u"\r\nKeine gültigen Daten in EF PD ";
constexpr auto* VdNote = u"\r\nRead EF VD war nicht erfolgreich!";
constexpr auto* GvdNote = u"\r\nRead EF GVD war nicht erfolgreich!";
constexpr auto* NoGvdNote = u"\r\nKeine gültigen Daten in EF GVD ";
constexpr auto* NoGvdStoredNote =
    u"\r\nZu diesem Datensatz wurden keine geschützten Versichertendaten (GVD) gespeichert!";
constexpr auto* EraseNote = u"\r\nKommando ERASE BINARY war nicht erfolgreich!";
constexpr auto* EraseRefusedNote = u"\r\nERASE BINARY war nicht erfolgreich!";

struct StopRow {
  const char* sentence;
  Terminal terminal;
  const char* part;
  const char* answers;
  const char16_t* message;

  friend std::ostream& operator<<(std::ostream& out, const StopRow& row) {
    return out << row.terminal << row.sentence;
  }
};

class MobileStopTest : public testing::TestWithParam<StopRow> {};

// Nothing further is sent: the record stays in the terminal.
TEST_P(MobileStopTest, MessageAndNothingFurther) {
  const StopRow& row = GetParam();
  RecordReading record(
      RecordScript(row.terminal).Answering(row.part, row.answers).WithoutRest(row.part),
      row.terminal);
  EgkReading& reading = record.reading;
  reading.insured[Element::Town] = QStringLiteral("of before");
  EXPECT_EQ(reading.FromMobile(), EgkResult::Stopped);
  EXPECT_EQ(reading.Boxes(), row.message == None ? Texts({}) : Texts({row.message}));
  reading.ExpectInformationBoxes();
  EXPECT_EQ(reading.insured[Element::Town], u"of before");
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"of before");
}

std::vector<StopRow> StopRows() {
  std::vector<StopRow> rows{
      {"status answers 6501", Terminal::Extended, "StatusVd", "< 65 01", NotReleased},
      {"status answers 6A82", Terminal::Extended, "StatusVd", "< 6A 82", NotReleased},
      {"status answers 6900", Terminal::Extended, "StatusVd", "< 69 00", NotInserted},
      {"status answers 6982", Terminal::Extended, "StatusVd", "< 69 82", StatusFailed},
      {"status answers 6D00", Terminal::Extended, "StatusVd", "< 6D 00", StatusFailed},
      {"status is empty", Terminal::Extended, "StatusVd", "< 62 82", StatusFailed},
      {"status fails", Terminal::Extended, "StatusVd", "< -> -10", StatusFailed},
  };
  for (const Terminal terminal : {Terminal::Plain, Terminal::Extended}) {
    rows.insert(rows.end(),
                {
                    {"DF.HCA fails", terminal, "Hca", "< -> -10", HcaFailed},
                    {"DF.HCA without status word", terminal, "Hca", "< 90", HcaFailed},
                    {"DF.HCA is not there", terminal, "Hca", "< 6A 82", HcaNotOnCard},
                    {"DF.HCA is deactivated", terminal, "Hca", "< 62 83", HcaDeactivated},
                    {"DF.HCA is not allowed", terminal, "Hca", "< 69 00", None},
                    {"DF.HCA answers 6501", terminal, "Hca", "< 65 01", HcaRefused},
                    {"DF.HCA answers 9001", terminal, "Hca", "< 90 01", HcaRefused},
                });
  }
  return rows;
}

INSTANTIATE_TEST_SUITE_P(Mobile, MobileStopTest, testing::ValuesIn(StopRows()), SentenceName());

// What is missing of the record then.
enum class Lost { Nothing, Status, Pd, Vd, Gvd };

struct NoteRow {
  const char* sentence;
  Terminal terminal;
  const char* part;
  const char* answers;
  const char16_t* note;
  Lost lost;

  friend std::ostream& operator<<(std::ostream& out, const NoteRow& row) {
    return out << row.terminal << row.sentence;
  }
};

class MobileNoteTest : public testing::TestWithParam<NoteRow> {};

// Everything else is read, the record is erased, and one box tells what was missing.
TEST_P(MobileNoteTest, OneNoteAndEverythingElse) {
  const NoteRow& row = GetParam();
  ScriptParts script = RecordScript(row.terminal).Answering(row.part, row.answers);
  if (std::string_view(row.part) == "Erase") script = script.WithoutRest(row.part);
  RecordReading record(script, row.terminal);
  EgkReading& reading = record.reading;
  EXPECT_EQ(reading.FromMobile(), EgkResult::Finished);
  EXPECT_EQ(reading.Boxes(), row.note == None ? Texts({}) : Texts({row.note}));
  reading.ExpectInformationBoxes();

  // The container of a plain record holds the GVD too.
  const bool withGvd =
      row.lost != Lost::Gvd && (row.lost != Lost::Vd || row.terminal == Terminal::Extended);
  InsuredData expected = SampleElements(row.lost != Lost::Pd, row.lost != Lost::Vd);
  if (row.lost != Lost::Status) {
    const bool isExtended = row.terminal == Terminal::Extended;
    expected[Element::ReadingDate] = QStringLiteral("05.03.2024");
    expected[Element::ApprovalNumber] =
        isExtended ? QStringLiteral("DENRV;DEMOTERM;001.002.003:004.005.006")
                   : QStringLiteral("DENRV;DEMOTERM;1.2.3:4.5.6");
    expected[Element::ChecksumSupplement] =
        isExtended ? QStringLiteral("22") : QStringLiteral("3F");
  }
  EXPECT_EQ(reading.insured, expected);
  EXPECT_EQ(reading.Document(VsdKind::Gvd).xmlText, withGvd ? GvdDocument() : QString());
  EXPECT_EQ(reading.egk.stored.statusText,
            row.lost == Lost::Status ? QString() : StatusVdText.toString());
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"PC (ASN-1)");
}

std::vector<NoteRow> NoteRows() {
  using enum Terminal;
  std::vector<NoteRow> rows{
      {"status answers 6501", Plain, "StatusVd", "< 65 01", StatusNote, Lost::Status},
      {"status answers 6A82", Plain, "StatusVd", "< 6A 82", StatusNote, Lost::Status},
      {"status answers 6900", Plain, "StatusVd", "< 69 00", StatusNote, Lost::Status},
      {"status is empty", Plain, "StatusVd", "< 62 82", StatusNote, Lost::Status},
      {"status fails", Plain, "StatusVd", "< -> -10", StatusNote, Lost::Status},

      {"EF.GVD is not stored", Extended, "Gvd", "< 6A 82", NoGvdStoredNote, Lost::Gvd},
      {"EF.GVD answers 6501", Extended, "Gvd", "< 65 01", GvdNote, Lost::Gvd},
      {"EF.GVD answers 6982", Extended, "Gvd", "< 69 82", GvdNote, Lost::Gvd},
      {"EF.GVD answers 6282 without data", Extended, "Gvd", "< 62 82", GvdNote, Lost::Gvd},
      {"EF.GVD is empty", Extended, "Gvd", "< 90 00", GvdNote, Lost::Gvd},
      {"EF.GVD fails", Extended, "Gvd", "< -> -8", GvdNote, Lost::Gvd},
      {"EF.GVD has no length", Extended, "Gvd", "< 01 90 00", NoGvdNote, Lost::Gvd},
      {"EF.GVD has a length of 0", Extended, "Gvd", "< 00 00 1F 8B 90 00", NoGvdNote, Lost::Gvd},
  };
  for (const Terminal terminal : {Plain, Extended}) {
    rows.insert(
        rows.end(),
        {
            {"EF.PD answers 6A82", terminal, "Pd", "< 6A 82", PdNote, Lost::Pd},
            {"EF.PD answers 6900", terminal, "Pd", "< 69 00", PdNote, Lost::Pd},
            {"EF.PD answers 6501", terminal, "Pd", "< 65 01", PdNote, Lost::Pd},
            {"EF.PD answers 6282 without data", terminal, "Pd", "< 62 82", PdNote, Lost::Pd},
            {"EF.PD is empty", terminal, "Pd", "< 90 00", PdNote, Lost::Pd},
            {"EF.PD fails", terminal, "Pd", "< -> -10", PdNote, Lost::Pd},
            {"EF.PD has no length", terminal, "Pd", "< 02 90 00", NoPdNote, Lost::Pd},

            {"EF.VD answers 6A82", terminal, "Vd", "< 6A 82", VdNote, Lost::Vd},
            {"EF.VD answers 6900", terminal, "Vd", "< 69 00", VdNote, Lost::Vd},
            {"EF.VD answers 6282 without data", terminal, "Vd", "< 62 82", VdNote, Lost::Vd},
            {"EF.VD is empty", terminal, "Vd", "< 90 00", VdNote, Lost::Vd},
            {"EF.VD fails", terminal, "Vd", "< -> -11", VdNote, Lost::Vd},

            {"ERASE BINARY fails", terminal, "Erase", "< -> -10", EraseNote, Lost::Nothing},
            {"ERASE BINARY without status word", terminal, "Erase", "<", EraseNote, Lost::Nothing},
            {"ERASE BINARY answers 6D00", terminal, "Erase", "< 6D 00", EraseRefusedNote,
             Lost::Nothing},
            {"ERASE BINARY answers 6900", terminal, "Erase", "< 69 00", EraseRefusedNote,
             Lost::Nothing},
            {"ERASE BINARY answers 9001", terminal, "Erase", "< 90 01", EraseRefusedNote,
             Lost::Nothing},
            {"EJECT ICC answers 6D00", terminal, "Eject", "< 6D 00", None, Lost::Nothing},
            {"EJECT ICC fails", terminal, "Eject", "< -> -10", None, Lost::Nothing},
        });
  }
  return rows;
}

INSTANTIATE_TEST_SUITE_P(Mobile, MobileNoteTest, testing::ValuesIn(NoteRows()), SentenceName());

// 6282 with data and 9001 are as good as 9000.
TEST(MobileReadTest, OtherSuccesses) {
  const ScriptParts script = PlainRecordScript();
  for (const char* statusWord : {"6282", "9001"}) {
    const auto file = [statusWord](const char* p1p2, const QByteArray& bytes) {
      return Exchange(std::string("00B0") + p1p2 + "00", bytes, statusWord);
    };
    const QByteArray vd = Container(Compressed(VdDocument(), 500), Compressed(GvdDocument(), 300));
    RecordReading record(
        script.Replacing("StatusVd", file("8C00", PlainStatusRecord()))
            .Replacing("Pd", file("8100", FileWithLength(Compressed(PdDocument(), 600))))
            .Replacing("Vd", file("8200", vd)),
        Terminal::Plain);
    EXPECT_EQ(record.reading.FromMobile(), EgkResult::Finished);
    EXPECT_EQ(record.reading.Boxes(), Texts({}));
    EXPECT_EQ(record.reading.Document(VsdKind::Gvd).xmlText, GvdDocument());
  }
}

// Nothing of a record can be read, and it is erased all the same; the notes stand in the order of
// the files.
TEST(MobileReadTest, AllNotesOfAPlainRecordInOneBox) {
  RecordReading record(PlainRecordScript()
                           .Answering("StatusVd", "< 65 01")
                           .Answering("Pd", "< 65 01")
                           .Answering("Vd", "< 65 01")
                           .Answering("Erase", "< 65 01")
                           .WithoutRest("Erase"),
                       Terminal::Plain);
  EXPECT_EQ(record.reading.FromMobile(), EgkResult::Finished);
  EXPECT_EQ(record.reading.Boxes(), Texts({u"\r\nRead EF Status VD  war nicht erfolgreich!"
                                           u"\r\nRead EF PD war nicht erfolgreich!"
                                           u"\r\nRead EF VD war nicht erfolgreich!"
                                           u"\r\nERASE BINARY war nicht erfolgreich!"}));
  record.reading.ExpectInformationBoxes();
  EXPECT_EQ(record.reading.insured, InsuredData{});
}

TEST(MobileReadTest, AllNotesOfAnExtendedRecordInOneBox) {
  RecordReading record(ExtendedRecordScript()
                           .Answering("Pd", "< 00 05 1F 8B 90 00")
                           .Answering("Vd", "< 00 08 00 10 00 11 00 20 90 00")
                           .Answering("Gvd", "< 6A 82")
                           .Answering("Erase", "< -> -8")
                           .WithoutRest("Erase"),
                       Terminal::Extended);
  EXPECT_EQ(record.reading.FromMobile(), EgkResult::Finished);
  EXPECT_EQ(record.reading.Boxes(),
            Texts({u"\r\nKeine gültigen Daten in EF PD "
                   u"\r\nKeine gültigen VD Daten in EF VD "
                   u"\r\nKeine gültigen GVD Daten im EF VD "
                   u"\r\nZu diesem Datensatz wurden keine geschützten Versichertendaten (GVD) "
                   u"gespeichert!"
                   u"\r\nKommando ERASE BINARY war nicht erfolgreich!"}));
}

// No box a missing object: the terminal kept none of them.
TEST(MobileReadTest, ARecordWithoutDateAndApprovalNumberIsNotedOnce) {
  RecordReading record(PlainRecordScript().Replacing(
                           "StatusVd", Exchange("00B08C0000", PlainStatusRecord().first(27))),
                       Terminal::Plain);
  EXPECT_EQ(record.reading.FromMobile(), EgkResult::Finished);
  EXPECT_EQ(record.reading.Boxes(),
            Texts({u"\r\nZu diesem Datensatz wurden weder Einlesedatum noch Zulassungsnummer "
                   u"gespeichert!"}));
  record.reading.ExpectInformationBoxes();
  EXPECT_EQ(record.reading.egk.stored.statusText.size(), 50);
  EXPECT_EQ(record.reading.egk.stored.storedDate, u"");
  EXPECT_EQ(record.reading.insured[Element::ReadingDate], u"");
}

// First what the files lacked, then what the status data lacked, then what the documents lacked.
TEST(MobileReadTest, OrderOfTheBoxes) {
  QByteArray status = PlainStatusRecord();
  status.back() = '\x00';
  RecordReading record(
      PlainRecordScript()
          .Replacing("StatusVd", Exchange("00B08C0000", status))
          .Answering("Pd", "< 6A 82")
          .Replacing("Vd", Exchange("00B0820000", Container(Damaged(VdDocument()), {}))),
      Terminal::Plain);
  EXPECT_EQ(record.reading.FromMobile(), EgkResult::Finished);
  const QString badChecksum =
      QStringLiteral("Die Prüfsumme der gelesenen eGK VSD Zusatzdaten ist korrupt!!! ");
  EXPECT_EQ(record.reading.Boxes(),
            Texts({u"\r\nRead EF PD war nicht erfolgreich!\r\nKeine GVD Daten im EF VD ",
                   badChecksum, u"Die Dekomprimierung der VD Daten war nicht erfolgreich!\r\n"}));
  record.reading.ExpectInformationBoxes({badChecksum});
}

// No box waits for an answer while the record is neither safe nor erased.
TEST(MobileReadTest, NoBoxBeforeTheErase) {
  QByteArray status = PlainStatusRecord();
  status.back() = '\x00';
  RecordReading record(PlainRecordScript()
                           .Replacing("StatusVd", Exchange("00B08C0000", status))
                           .Answering("Pd", "< 6A 82")
                           .Answering("Vd", "< 6A 82"),
                       Terminal::Plain);
  EgkReading& reading = record.reading;
  std::vector<std::size_t> boxesAtExchange;
  reading.link.eventLoop.onYield = [&] {
    boxesAtExchange.push_back(reading.link.dialogs.boxes.size());
  };
  EXPECT_EQ(reading.FromMobile(), EgkResult::Finished);
  EXPECT_EQ(boxesAtExchange, std::vector<std::size_t>(6, 0U));
  EXPECT_EQ(reading.Boxes().size(), 2U);
}

// The card's own texts stay as they are; those of stored records start empty.
TEST(MobileReadTest, NothingOfAnEarlierRecordIsLeft) {
  RecordReading record(PlainRecordScript().Answering("StatusVd", "< 6A 82"), Terminal::Plain);
  EgkReading& reading = record.reading;
  reading.FillWithAnotherPerson();
  for (VsdDocument& document : reading.egk.documents) document = {};
  reading.egk.iccsn.clear();
  reading.egk.statusText.clear();
  EXPECT_EQ(reading.FromMobile(), EgkResult::Finished);
  reading.ExpectNothingOfAnotherPerson();
}

}  // namespace
}  // namespace kartocheck::test
