// Lengths and offsets in the files of a stored record, at and past their limits.

#include <gtest/gtest.h>

#include "egk/readers/egk_reading.h"
#include "egk/readers/sample_documents.h"
#include "egk/readers/script_parts.h"
#include "support/dialogue.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

constexpr auto* NoPd = u"\r\nKeine gültigen Daten in EF PD ";
constexpr auto* NoVd = u"\r\nKeine gültigen VD Daten in EF VD ";
constexpr auto* NoGvdInContainer = u"\r\nKeine GVD Daten im EF VD ";
constexpr auto* BadGvdInContainer = u"\r\nKeine gültigen GVD Daten im EF VD ";
constexpr auto* NoGvd = u"\r\nKeine gültigen Daten in EF GVD ";
constexpr auto* VdTooLong = u"\r\nRead EF VD war nicht erfolgreich!";
constexpr auto* PdTooLong = u"\r\nRead EF PD war nicht erfolgreich!";
constexpr auto* BadChecksum = u"Die Prüfsumme der gelesenen eGK VSD Zusatzdaten ist korrupt!!! ";
constexpr auto* GvdTooLong = u"\r\nRead EF GVD war nicht erfolgreich!";

QString Joined(std::initializer_list<QStringView> notes) {
  QString text;
  for (const QStringView note : notes) text += note;
  return text;
}

struct FileRow {
  const char* sentence;
  QByteArray file;
  QString notes;
  bool isRead;

  friend std::ostream& operator<<(std::ostream& out, const FileRow& row) {
    return out << row.sentence;
  }
};

void ExpectFile(const ScriptParts& intact, const char* part, const char* p1p2, VsdKind kind,
                const QString& document, const FileRow& row) {
  Dialogue dialogue(
      intact.Replacing(part, Exchange(std::string("00B0") + p1p2 + "00", row.file)).Text().c_str());
  EgkReading reading(dialogue);
  reading.info.Reset95 = true;
  reading.info.Reset9501 = intact.Has("Gvd");
  EXPECT_EQ(reading.FromMobile(), EgkResult::Finished);
  EXPECT_EQ(reading.Boxes(), row.notes.isEmpty() ? Texts({}) : Texts({row.notes}));
  EXPECT_EQ(reading.Document(kind).xmlText, row.isRead ? document : QString());
}

class MobilePdTest : public testing::TestWithParam<FileRow> {};

TEST_P(MobilePdTest, ReadOrNoted) {
  ExpectFile(PlainRecordScript(), "Pd", "8100", VsdKind::Pd, PdDocument(), GetParam());
  ExpectFile(ExtendedRecordScript(), "Pd", "8100", VsdKind::Pd, PdDocument(), GetParam());
}

QByteArray Pd(qsizetype size) {
  return Compressed(PdDocument(), size);
}

INSTANTIATE_TEST_SUITE_P(
    Mobile, MobilePdTest,
    testing::Values(FileRow{"the file ends at its data", FileWithLength(Pd(600)), {}, true},
                    FileRow{"zero bytes behind the data",
                            FileWithLength(Pd(600)) + QByteArray(100, '\0'),
                            {},
                            true},
                    FileRow{"the longest data", FileWithLength(Pd(848)), {}, true},
                    FileRow{"a file as large as the buffer",
                            FileWithLength(Pd(600)).leftJustified(850, '\0'),
                            {},
                            true},
                    FileRow{"a file larger than the buffer",
                            FileWithLength(Pd(600)).leftJustified(851, '\0'), Joined({PdTooLong}),
                            false},
                    FileRow{"a length one too large", Number(601) + Pd(600), Joined({NoPd}), false},
                    FileRow{"a length of 0", Number(0) + Pd(600), Joined({NoPd}), false},
                    FileRow{"a length of FFFF", Number(0xFFFF) + Pd(600), Joined({NoPd}), false},
                    FileRow{"nothing but a length", Number(1), Joined({NoPd}), false},
                    FileRow{"half a length", QByteArray(1, '\0'), Joined({NoPd}), false}),
    SentenceName());

class MobilePlainVdTest : public testing::TestWithParam<FileRow> {};

TEST_P(MobilePlainVdTest, VdReadOrNoted) {
  ExpectFile(PlainRecordScript(), "Vd", "8200", VsdKind::Vd, VdDocument(), GetParam());
}

// EF.VD with these offsets, then 500 bytes of VD from 8 on and 300 of GVD from 508 on.
QByteArray ContainerWith(int vdStart, int vdEnd, int gvdStart, int gvdEnd) {
  return Number(vdStart) + Number(vdEnd) + Number(gvdStart) + Number(gvdEnd) +
         Compressed(VdDocument(), 500) + Compressed(GvdDocument(), 300);
}

INSTANTIATE_TEST_SUITE_P(
    Mobile, MobilePlainVdTest,
    testing::Values(
        FileRow{"VD and GVD", ContainerWith(8, 507, 508, 807), {}, true},
        FileRow{"zero bytes behind the data",
                ContainerWith(8, 507, 508, 807).leftJustified(1250, '\0'),
                {},
                true},
        FileRow{"a file larger than the buffer",
                ContainerWith(8, 507, 508, 807).leftJustified(1251, '\0'), Joined({VdTooLong}),
                false},
        FileRow{"the VD up to the file's end", ContainerWith(8, 807, 508, 807), {}, true},
        FileRow{"the VD one byte past the file's end", ContainerWith(8, 808, 508, 807),
                Joined({NoVd}), false},
        FileRow{"the VD behind the file", ContainerWith(808, 900, 508, 807), Joined({NoVd}), false},
        FileRow{"the VD up to FFFF", ContainerWith(8, 0xFFFF, 508, 807), Joined({NoVd}), false},
        FileRow{"the VD's end before its start", ContainerWith(8, 7, 508, 807), Joined({NoVd}),
                false},
        FileRow{"the VD's offsets FFFF", ContainerWith(0xFFFF, 0xFFFF, 508, 807), Joined({NoVd}),
                false},
        FileRow{"the VD's offsets 0", ContainerWith(0, 0, 508, 807), Joined({NoVd}), false},
        FileRow{"the VD from the offsets on", ContainerWith(0, 507, 508, 807), Joined({NoVd}),
                false},
        FileRow{"the VD from FFFF to 0", ContainerWith(0xFFFF, 0, 508, 807), Joined({NoVd}), false},
        FileRow{"no GVD, offsets FFFF", ContainerWith(8, 507, 0xFFFF, 0xFFFF),
                Joined({NoGvdInContainer}), true},
        FileRow{"no GVD, offsets 0", ContainerWith(8, 507, 0, 0), Joined({NoGvdInContainer}), true},
        FileRow{"the GVD one byte past the file's end", ContainerWith(8, 507, 508, 808),
                Joined({BadGvdInContainer}), true},
        FileRow{"the GVD from FFFF to 0", ContainerWith(8, 507, 0xFFFF, 0),
                Joined({BadGvdInContainer}), true},
        FileRow{"the GVD from the offsets on", ContainerWith(8, 507, 0, 807),
                Joined({BadGvdInContainer}), true},
        FileRow{"the GVD's end before its start", ContainerWith(8, 507, 508, 507),
                Joined({BadGvdInContainer}), true},
        FileRow{"neither VD nor GVD", ContainerWith(0, 0, 0, 0), Joined({NoVd, NoGvdInContainer}),
                false},
        FileRow{"a VD but half the GVD's offsets", ContainerWith(8, 507, 508, 807).first(7),
                Joined({NoVd, BadGvdInContainer}), false},
        FileRow{"one byte", QByteArray(1, '\0'), Joined({NoVd, NoGvdInContainer}), false}),
    SentenceName());

// The GVD of the container, whatever became of the VD.
class MobileContainerGvdTest : public testing::TestWithParam<FileRow> {};

TEST_P(MobileContainerGvdTest, GvdReadOrNoted) {
  ExpectFile(PlainRecordScript(), "Vd", "8200", VsdKind::Gvd, GvdDocument(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Mobile, MobileContainerGvdTest,
    testing::Values(FileRow{"VD and GVD", ContainerWith(8, 507, 508, 807), {}, true},
                    FileRow{"no VD, but a GVD", ContainerWith(0, 0, 508, 807), Joined({NoVd}),
                            true},
                    FileRow{"the GVD one byte past the file's end", ContainerWith(8, 507, 508, 808),
                            Joined({BadGvdInContainer}), false},
                    FileRow{"the GVD's offsets 0", ContainerWith(8, 507, 0, 0),
                            Joined({NoGvdInContainer}), false},
                    FileRow{"the GVD's offsets FFFF", ContainerWith(8, 507, 0xFFFF, 0xFFFF),
                            Joined({NoGvdInContainer}), false}),
    SentenceName());

class MobileExtendedGvdTest : public testing::TestWithParam<FileRow> {};

TEST_P(MobileExtendedGvdTest, GvdReadOrNoted) {
  ExpectFile(ExtendedRecordScript(), "Gvd", "8300", VsdKind::Gvd, GvdDocument(), GetParam());
}

QByteArray Gvd(qsizetype size) {
  return Compressed(GvdDocument(), size);
}

INSTANTIATE_TEST_SUITE_P(
    Mobile, MobileExtendedGvdTest,
    testing::Values(
        FileRow{"the file ends at its data", FileWithLength(Gvd(300)), {}, true},
        FileRow{
            "zero bytes behind the data", FileWithLength(Gvd(300)) + QByteArray(9, '\0'), {}, true},
        FileRow{"a file as large as the buffer", FileWithLength(Gvd(598)), {}, true},
        FileRow{"a file larger than the buffer", FileWithLength(Gvd(599)), Joined({GvdTooLong}),
                false},
        FileRow{"a length one too large", Number(301) + Gvd(300), Joined({NoGvd}), false},
        FileRow{"a length of FFFF", Number(0xFFFF) + Gvd(300), Joined({NoGvd}), false},
        FileRow{"a length of 0", Number(0) + Gvd(300), Joined({NoGvd}), false},
        FileRow{"half a length", QByteArray(1, '\x01'), Joined({NoGvd}), false}),
    SentenceName());

// An extended record keeps the GVD in its own file and says nothing of a container without one.
class MobileExtendedContainerTest : public testing::TestWithParam<FileRow> {};

TEST_P(MobileExtendedContainerTest, NotedOrNot) {
  ExpectFile(ExtendedRecordScript(), "Vd", "8200", VsdKind::Vd, VdDocument(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Mobile, MobileExtendedContainerTest,
    testing::Values(
        FileRow{"no GVD, offsets FFFF", ContainerWith(8, 507, 0xFFFF, 0xFFFF), {}, true},
        FileRow{"no GVD, offsets 0", ContainerWith(8, 507, 0, 0), {}, true},
        FileRow{"a GVD", ContainerWith(8, 507, 508, 807), {}, true},
        FileRow{"the GVD past the file's end", ContainerWith(8, 507, 508, 808),
                Joined({BadGvdInContainer}), true}),
    SentenceName());

// Which GVD is taken: EF.GVD's, else the container's.
struct GvdSourceRow {
  const char* sentence;
  const char* answer;  // of EF.GVD; nullptr: another GVD
  const char16_t* note;
  bool isContainers;

  friend std::ostream& operator<<(std::ostream& out, const GvdSourceRow& row) {
    return out << row.sentence;
  }
};

class MobileGvdSourceTest : public testing::TestWithParam<GvdSourceRow> {};

TEST_P(MobileGvdSourceTest, FileOrContainer) {
  const GvdSourceRow& row = GetParam();
  const QString ofFile = QStringLiteral("<Zuzahlungsstatus/>");
  ScriptParts script = ExtendedRecordScript().Replacing(
      "Vd", Exchange("00B0820000", ContainerWith(8, 507, 508, 807)));
  script =
      row.answer == nullptr
          ? script.Replacing("Gvd", Exchange("00B0830000", FileWithLength(Compressed(ofFile, 100))))
          : script.Answering("Gvd", row.answer);
  Dialogue dialogue(script.Text().c_str());
  EgkReading reading(dialogue);
  reading.info.Reset95 = true;
  reading.info.Reset9501 = true;
  EXPECT_EQ(reading.FromMobile(), EgkResult::Finished);
  EXPECT_EQ(reading.Boxes(), row.note == nullptr ? Texts({}) : Texts({row.note}));
  EXPECT_EQ(reading.Document(VsdKind::Gvd).xmlText, row.isContainers ? GvdDocument() : ofFile);
}

INSTANTIATE_TEST_SUITE_P(
    Mobile, MobileGvdSourceTest,
    testing::Values(GvdSourceRow{"EF.GVD holds one", nullptr, nullptr, false},
                    GvdSourceRow{
                        "EF.GVD is not stored", "< 6A 82",
                        u"\r\nZu diesem Datensatz wurden keine geschützten Versichertendaten (GVD) "
                        u"gespeichert!",
                        true},
                    GvdSourceRow{"EF.GVD fails", "< -> -10", GvdTooLong, true},
                    GvdSourceRow{"EF.GVD holds none", "< 00 00 00 90 00", NoGvd, true}),
    SentenceName());

struct DecoderRow {
  const char* sentence;
  const char* part;
  const char* p1p2;
  bool isContainersGvd;
  const char16_t* notDecompressed;
  const char16_t* noXml;

  friend std::ostream& operator<<(std::ostream& out, const DecoderRow& row) {
    return out << row.sentence;
  }
};

class MobileDecoderResultTest : public testing::TestWithParam<DecoderRow> {
 protected:
  static std::vector<QString> BoxesOf(const QByteArray& block, bool isValidated) {
    const DecoderRow& row = GetParam();
    QByteArray file = FileWithLength(block);
    if (std::string_view(row.part) == "Vd") {
      file =
          row.isContainersGvd ? Container(Compressed(VdDocument()), block) : Container(block, {});
    }
    const std::string script =
        ExtendedRecordScript()
            .Answering("Gvd", "< 6A 82")
            .Replacing(row.part, Exchange(std::string("00B0") + row.p1p2 + "00", file))
            .Text();
    Dialogue dialogue(script.c_str());
    EgkReading reading(dialogue);
    reading.info.Reset95 = true;
    reading.info.Reset9501 = true;
    reading.validation.isOn = isValidated;
    EXPECT_EQ(reading.FromMobile(), EgkResult::Finished);
    std::vector<QString> boxes = reading.Boxes();
    if (std::string_view(row.part) != "Gvd") boxes.erase(boxes.begin());  // no EF.GVD
    return boxes;
  }
};

TEST_P(MobileDecoderResultTest, Messages) {
  EXPECT_EQ(BoxesOf(Damaged(PdDocument().first(200)), false), Texts({GetParam().notDecompressed}));
  EXPECT_EQ(BoxesOf(Compressed(QStringLiteral("<not closed")), true), Texts({GetParam().noXml}));
  EXPECT_EQ(BoxesOf(Compressed(QStringLiteral("<not closed")), false), Texts({}));
}

constexpr auto* PdNotDecompressed = u"Die Dekomprimierung der PD Daten war nicht erfolgreich!\r\n";
constexpr auto* VdNotDecompressed = u"Die Dekomprimierung der VD Daten war nicht erfolgreich!\r\n";
constexpr auto* GvdNotDecompressed =
    u"Die Dekomprimierung der GVD Daten war nicht erfolgreich!\r\n";

INSTANTIATE_TEST_SUITE_P(
    Mobile, MobileDecoderResultTest,
    testing::Values(
        DecoderRow{"PD", "Pd", "8100", false, PdNotDecompressed, u"Error PD XML Daten!\r\n"},
        DecoderRow{"VD", "Vd", "8200", false, VdNotDecompressed, u"Error VD XML Daten!\r\n"},
        DecoderRow{"GVD of the container", "Vd", "8200", true, GvdNotDecompressed,
                   u"Error GVD XML Daten!\r\n"},
        DecoderRow{"GVD of its own file", "Gvd", "8300", false, GvdNotDecompressed,
                   u"Error GVD XML Daten!\r\n"}),
    SentenceName());

// The documents are decompressed in this order, whatever the order of the files.
TEST(MobileDocumentTest, PdThenVdThenGvd) {
  Dialogue dialogue(PlainRecordScript().Text().c_str());
  EgkReading reading(dialogue);
  reading.info.Reset95 = true;
  EXPECT_EQ(reading.FromMobile(), EgkResult::Finished);
  EXPECT_EQ(reading.link.display.statusTexts,
            Texts({u"Persoenliche Versichertendaten werden dekomprimiert.",
                   u"Allgemeine Versicherungsdaten werden dekomprimiert.",
                   u"Geschuetzte Versichertendaten werden dekomprimiert."}));
}

// What is no compressed data is shown as it is, so a block of one byte is a text of one character;
// it may lie in the offsets themselves, from 1 on.
TEST(MobileDocumentTest, TheSmallestBlocks) {
  Dialogue dialogue(
      ExtendedRecordScript()
          .Replacing("Pd", Exchange("00B0810000", FileWithLength("P")))
          .Replacing("Vd", Exchange("00B0820000", Number(1) + Number(1) + QByteArray(4, '\xFF')))
          .Replacing("Gvd", Exchange("00B0830000", FileWithLength("G")))
          .Text());
  EgkReading reading(dialogue);
  reading.info.Reset95 = true;
  reading.info.Reset9501 = true;
  EXPECT_EQ(reading.FromMobile(), EgkResult::Finished);
  EXPECT_EQ(reading.Boxes(), Texts({}));
  EXPECT_EQ(reading.Document(VsdKind::Pd).xmlText, u"P");
  EXPECT_EQ(reading.Document(VsdKind::Vd).xmlText, u"\x01");
  EXPECT_EQ(reading.Document(VsdKind::Gvd).xmlText, u"G");
}

// Two digits, whatever the length of the checksum's data object.
TEST(MobileDocumentTest, ChecksumElement) {
  QByteArray status = PlainStatusRecord();
  status.chop(3);
  status += QByteArray::fromHex("9302123F");
  Dialogue dialogue(
      PlainRecordScript().Replacing("StatusVd", Exchange("00B08C0000", status)).Text().c_str());
  EgkReading reading(dialogue);
  reading.info.Reset95 = true;
  EXPECT_EQ(reading.FromMobile(), EgkResult::Finished);
  EXPECT_EQ(reading.insured[Element::ChecksumSupplement], u"12");
  EXPECT_EQ(reading.egk.stored.checksumText, u"123F");
  EXPECT_EQ(reading.Boxes(), Texts({BadChecksum}));
}

// The supplement belongs to terminals that are flagged mobile.
TEST(MobileDocumentTest, NumberOfElements) {
  for (const bool isMobile : {false, true}) {
    Dialogue dialogue(PlainRecordScript().Text().c_str());
    EgkReading reading(dialogue);
    reading.info.Reset95 = isMobile;
    EXPECT_EQ(reading.FromMobile(), EgkResult::Finished);
    EXPECT_EQ(reading.insured[Element::ReadingDate].isEmpty(), !isMobile);
    EXPECT_EQ(reading.insured[Element::Checksum], u"");
  }
}

}  // namespace
}  // namespace kartocheck::test
