#include "egk/vsd_decoder.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <string>

#include "egk/vsd_documents.h"
#include "egk/vsd_fixture.h"

namespace kartocheck {
namespace {

const QString NotDone = QStringLiteral("Es wurde keine Validierung der XML Daten durchgeführt!");

// What is expected of a kind, and a document of it that our schema accepts.
struct KindRow {
  VsdKind kind;
  QString decompressing;
  QString validating;
  QString couldNot;
  QString schemaName;
  QString document;
  QString mappedLine;  // one of those that the document gives
};

const std::vector<KindRow> KindRows{
    {VsdKind::Vd, QStringLiteral("Allgemeine Versicherungsdaten werden dekomprimiert."),
     QStringLiteral("Allgemeine Versicherungsdaten werden validiert."),
     QStringLiteral(
         "Eine lokale Validierung der XML Daten  konnte nicht durchgeführt werden!\r\n\r\n"),
     QStringLiteral("mittels vorgegebenen Schema für UC_allgemeineVersicherungsdatenXML "),
     QStringLiteral("genuine/vd_default_namespace.xml"), QStringLiteral("row 9 | WOP | 38")},
    {VsdKind::Pd, QStringLiteral("Persoenliche Versichertendaten werden dekomprimiert."),
     QStringLiteral("Persoenliche Versichertendaten werden validiert."),
     QStringLiteral("Eine Validierung der XML Daten  konnte nicht durchgeführt werden!\r\n\r\n"),
     QStringLiteral("mittels vorgegebenen Schema für UC_PersoenlicheVersichertendatenXML "),
     QStringLiteral("genuine/pd_minimal.xml"), QStringLiteral("row 2 | Nachname | O")},
    {VsdKind::Gvd, QStringLiteral("Geschuetzte Versichertendaten werden dekomprimiert."),
     QStringLiteral("Geschuetzte Versichertendaten werden validiert."),
     QStringLiteral("Eine Validierung der XML Daten  konnte nicht durchgeführt werden!\r\n\r\n"),
     QStringLiteral("mittels vorgegebenen Schema für UC_geschuetzteVersichertendatenXML "),
     QStringLiteral("genuine/gvd_default_namespace.xml"),
     QStringLiteral("row 2 | ZUZAHLUNGSSTATUS\\Status | 0")},
};

class VsdDecoder : public testing::TestWithParam<KindRow> {
 protected:
  [[nodiscard]] VsdResult Run(const QByteArray& compressed) {
    return fixture_.Decompress(GetParam().kind, compressed);
  }
  [[nodiscard]] VsdDocument& Kept() { return fixture_.egk.documents[GetParam().kind]; }
  [[nodiscard]] HeldSchema& Schema() { return fixture_.validation.schemas[GetParam().kind]; }
  [[nodiscard]] bool IsMapped() const {
    return fixture_.Mapped(GetParam().kind).contains(GetParam().mappedLine);
  }
  void LeaveTraces() {
    Kept().xmlText = QStringLiteral("vorher");
    Kept().validationText = QStringLiteral("vorher");
    Kept().notValidated = false;
  }
  // Neither the other kinds' documents nor the rest of the slot.
  void ExpectNothingElseWritten() {
    EgkData rest = fixture_.egk;
    rest.documents[GetParam().kind] = {};
    EXPECT_TRUE(rest.IsEmpty());
  }

  test::VsdFixture fixture_;
  const QByteArray bytes_ = test::ReadDocument(GetParam().document);
  const QByteArray member_ = test::Gzip(bytes_);
};

TEST_P(VsdDecoder, WithoutBytesGivesAnXmlErrorAndTouchesNothing) {
  LeaveTraces();
  EXPECT_EQ(Run(QByteArray()), VsdResult::XmlError);
  EXPECT_EQ(Kept().xmlText, QStringLiteral("vorher"));
  EXPECT_EQ(Kept().validationText, QStringLiteral("vorher"));
  EXPECT_FALSE(Kept().notValidated);
  EXPECT_EQ(fixture_.display.statusTexts, std::vector<QString>{GetParam().decompressing});
  EXPECT_EQ(fixture_.eventLoop.yields, 0);
}

TEST_P(VsdDecoder, DecompressesAndMaps) {
  LeaveTraces();
  EXPECT_EQ(Run(member_), VsdResult::Decompressed);
  EXPECT_EQ(Kept().xmlText, QString::fromLatin1(bytes_).replace(u'¤', u'€'));
  EXPECT_EQ(Kept().validationText, NotDone);
  EXPECT_TRUE(Kept().notValidated);
  EXPECT_TRUE(IsMapped());
  EXPECT_EQ(fixture_.display.statusTexts, std::vector<QString>{GetParam().decompressing});
  EXPECT_EQ(fixture_.eventLoop.yields, 1);
  ExpectNothingElseWritten();
}

TEST_P(VsdDecoder, TakesABlockThatIsNotGzipDataAsTheText) {
  EXPECT_EQ(Run(bytes_), VsdResult::Decompressed);
  EXPECT_TRUE(IsMapped());
}

TEST_P(VsdDecoder, FailsForDamagedData) {
  LeaveTraces();
  QByteArray damaged = member_;
  damaged[damaged.size() - 8] = static_cast<char>(damaged.at(damaged.size() - 8) ^ 1);
  EXPECT_EQ(Run(damaged), VsdResult::NotDecompressed);
  EXPECT_EQ(Kept().xmlText, QStringLiteral("vorher"));
  EXPECT_EQ(Kept().validationText, QStringLiteral("vorher"));
  EXPECT_FALSE(Kept().notValidated);
  EXPECT_EQ(fixture_.eventLoop.yields, 1);
}

TEST_P(VsdDecoder, TakesOneCharacterBelowTheCap) {
  QByteArray text = bytes_;
  text.append(QByteArray(32767 - text.size(), ' '));
  EXPECT_EQ(Run(test::Gzip(text)), VsdResult::Decompressed);
  EXPECT_EQ(Kept().xmlText.size(), 32767);
  EXPECT_TRUE(IsMapped());
}

TEST_P(VsdDecoder, FailsAtTheCapThoughTheDataAreIntact) {
  LeaveTraces();
  QByteArray text = bytes_;
  text.append(QByteArray(32768 - text.size(), ' '));
  EXPECT_EQ(Run(test::Gzip(text)), VsdResult::NotDecompressed);
  EXPECT_EQ(Run(text), VsdResult::NotDecompressed);
  EXPECT_EQ(Run(test::Gzip(text + text + text)), VsdResult::NotDecompressed);
  EXPECT_EQ(Kept().xmlText, QStringLiteral("vorher"));
  EXPECT_EQ(fixture_.eventLoop.yields, 3);
}

TEST_P(VsdDecoder, TakesTextsOfWholePieces) {
  for (const int size : {2047, 2048, 2049, 4096}) {
    QByteArray text = bytes_;
    text.append(QByteArray(size - text.size(), ' '));
    fixture_.egk.Clear();
    EXPECT_EQ(Run(test::Gzip(text)), VsdResult::Decompressed);
    EXPECT_EQ(Kept().xmlText.size(), size);
    EXPECT_TRUE(IsMapped());
  }
}

struct SignatureRow {
  const char* bytes;  // hexadecimal
  VsdResult result;
};

TEST_P(VsdDecoder, FailsForWhatStillLooksCompressed) {
  for (const SignatureRow& row : std::initializer_list<SignatureRow>{
           {"1F8B0800", VsdResult::Decompressed},  // cut in its header: an empty text
           {"1F8B0700", VsdResult::NotDecompressed},
           {"1F3C612F3E", VsdResult::NotDecompressed},
           {"1F", VsdResult::NotDecompressed},
           {"3C8B", VsdResult::NotDecompressed},
           {"3C", VsdResult::Decompressed},
           {"8B1F", VsdResult::Decompressed},
           {"3C611F8B", VsdResult::Decompressed}}) {
    EXPECT_EQ(Run(QByteArray::fromHex(row.bytes)), row.result) << row.bytes;
  }
  // What was decompressed is looked at, not the block.
  EXPECT_EQ(Run(test::Gzip(member_)), VsdResult::NotDecompressed);
  EXPECT_EQ(Run(test::Gzip(QByteArray::fromHex("1F61"))), VsdResult::NotDecompressed);
  EXPECT_EQ(Run(test::Gzip(QByteArray::fromHex("618B"))), VsdResult::NotDecompressed);
}

TEST_P(VsdDecoder, TakesAnEmptyTextForNoDocument) {
  LeaveTraces();
  EXPECT_EQ(Run(test::Gzip(QByteArray())), VsdResult::Decompressed);
  EXPECT_EQ(Kept().xmlText, QString());
  EXPECT_EQ(Kept().validationText, NotDone);
  EXPECT_EQ(fixture_.Mapped(GetParam().kind), QStringList());
  fixture_.validation.isOn = true;
  EXPECT_EQ(Run(test::Gzip(QByteArray())), VsdResult::XmlError);
}

TEST_P(VsdDecoder, WithoutValidationForgivesWhatIsNoDocument) {
  EXPECT_EQ(Run("<r><Nachname>N</Nachname>"), VsdResult::Decompressed);
  EXPECT_EQ(Kept().xmlText, QStringLiteral("<r><Nachname>N</Nachname>"));
  EXPECT_EQ(Kept().validationText, NotDone);
  EXPECT_EQ(fixture_.Mapped(GetParam().kind), QStringList());
}

TEST_P(VsdDecoder, DropsADeclarationThatTheParserRefuses) {
  QByteArray unknown = bytes_;
  unknown.replace("ISO-8859-15", "X-ERFUNDEN");
  ASSERT_NE(unknown, bytes_);
  EXPECT_EQ(Run(test::Gzip(unknown)), VsdResult::Decompressed);
  EXPECT_TRUE(IsMapped());
  EXPECT_TRUE(Kept().xmlText.contains(u"X-ERFUNDEN"));  // the text itself is kept
}

TEST_P(VsdDecoder, DropsEverythingUpToTheFirstClosingOfADeclaration) {
  const QByteArray body = bytes_.sliced(bytes_.indexOf("?>") + 2);
  EXPECT_EQ(Run("Vorspann <x> &?>" + body), VsdResult::Decompressed);
  EXPECT_TRUE(IsMapped());
  fixture_.egk.Clear();
  EXPECT_EQ(Run("?>" + body), VsdResult::Decompressed);
  EXPECT_TRUE(IsMapped());
  fixture_.egk.Clear();
  EXPECT_EQ(Run("\xEF\xBB\xBF" + bytes_), VsdResult::Decompressed);
  EXPECT_TRUE(IsMapped());
  fixture_.egk.Clear();
  EXPECT_EQ(Run("zwei ?> ?>" + body), VsdResult::Decompressed);  // the first only
  EXPECT_FALSE(IsMapped());
  EXPECT_EQ(Run(">" + body), VsdResult::Decompressed);
  EXPECT_FALSE(IsMapped());
}

TEST_P(VsdDecoder, WithValidationAnUnknownEncodingIsAnXmlError) {
  QByteArray unknown = bytes_;
  unknown.replace("ISO-8859-15", "X-ERFUNDEN");
  fixture_.ValidateWithOwnSchemas();
  LeaveTraces();
  EXPECT_EQ(Run(test::Gzip(unknown)), VsdResult::XmlError);
  EXPECT_TRUE(Kept().xmlText.contains(u"X-ERFUNDEN"));
  EXPECT_EQ(Kept().validationText, NotDone);
  EXPECT_TRUE(Kept().notValidated);
  EXPECT_FALSE(IsMapped());
  EXPECT_EQ(fixture_.display.statusTexts,
            (std::vector<QString>{GetParam().decompressing, GetParam().validating}));
}

TEST_P(VsdDecoder, WithValidationWithoutSchemaMapsNothing) {
  fixture_.validation.isOn = true;
  LeaveTraces();
  EXPECT_EQ(Run(member_), VsdResult::Decompressed);
  EXPECT_EQ(Kept().validationText,
            GetParam().couldNot + QStringLiteral("Kein lokales XSD-Schema verfügbar! "));
  EXPECT_TRUE(Kept().notValidated);
  EXPECT_FALSE(IsMapped());
  EXPECT_FALSE(Kept().xmlText.startsWith(u"<?xml"));  // the root's own XML
  EXPECT_FALSE(Kept().xmlText.isEmpty());
}

TEST_P(VsdDecoder, ASchemaThatIsNoDocumentIsNone) {
  fixture_.validation.isOn = true;
  for (const char* const text : {"<", "<xs:schema", "<!DOCTYPE a><a/>"}) {
    Schema().SetText(QString::fromLatin1(text));
    EXPECT_EQ(Run(member_), VsdResult::Decompressed);
    EXPECT_EQ(Kept().validationText,
              GetParam().couldNot + QStringLiteral("Kein lokales XSD-Schema verfügbar! "));
  }
}

TEST_P(VsdDecoder, WithValidationUnderAnotherNamespaceMapsNothing) {
  fixture_.ValidateWithOwnSchemas();
  LeaveTraces();
  QByteArray other = bytes_;
  other.replace("/v5.2", "/v5.3");
  EXPECT_EQ(Run(test::Gzip(other)), VsdResult::Decompressed);
  EXPECT_EQ(
      Kept().validationText,
      GetParam().couldNot +
          QStringLiteral("Der URI-Verweis für den Namespace dieses Schemas ist nicht zutreffend!"));
  EXPECT_TRUE(Kept().notValidated);
  EXPECT_FALSE(IsMapped());
}

TEST_P(VsdDecoder, WithValidationValidDataAreMapped) {
  fixture_.ValidateWithOwnSchemas();
  LeaveTraces();
  Kept().notValidated = true;
  EXPECT_EQ(Run(member_), VsdResult::Decompressed);
  EXPECT_EQ(Kept().validationText, QStringLiteral("Die lokale Validierung der XML Daten \r\n") +
                                       GetParam().schemaName +
                                       QStringLiteral("(5.2.0)\r\nwar erfolgreich!"));
  EXPECT_FALSE(Kept().notValidated);
  EXPECT_TRUE(IsMapped());
  EXPECT_EQ(fixture_.display.statusTexts,
            (std::vector<QString>{GetParam().decompressing, GetParam().validating}));
  EXPECT_EQ(fixture_.eventLoop.yields, 1);
  ExpectNothingElseWritten();
}

TEST_P(VsdDecoder, WithValidationInvalidDataAreKeptAndNotMapped) {
  fixture_.ValidateWithOwnSchemas();
  LeaveTraces();
  QByteArray invalid = bytes_;
  invalid.replace("5.2.0", "5.2.9");
  EXPECT_EQ(Run(test::Gzip(invalid)), VsdResult::Decompressed);
  EXPECT_EQ(Kept().validationText, QStringLiteral("Die lokale Validierung der XML Daten \r\n") +
                                       GetParam().schemaName +
                                       QStringLiteral("(5.2.0)\r\nwar nicht erfolgreich!"));
  EXPECT_TRUE(Kept().notValidated);
  EXPECT_TRUE(Kept().xmlText.contains(u"5.2.9"));
  EXPECT_FALSE(IsMapped());
}

TEST_P(VsdDecoder, ALaterDocumentIsUnvalidatedAgain) {
  fixture_.ValidateWithOwnSchemas();
  EXPECT_EQ(Run(member_), VsdResult::Decompressed);
  EXPECT_FALSE(Kept().notValidated);
  EXPECT_EQ(Run("kein XML"), VsdResult::XmlError);
  EXPECT_TRUE(Kept().notValidated);
  EXPECT_EQ(Kept().validationText, NotDone);
}

TEST_P(VsdDecoder, TheDatasVersionStandsInForTheSchemas) {
  fixture_.validation.isOn = true;
  Schema().SetText(ReadSchemaText(test::DocumentPath(QStringLiteral("schemas/any_content.xsd"))));
  const auto expectVersion = [this](const QByteArray& bytes, const QString& version) {
    EXPECT_EQ(Run(bytes), VsdResult::Decompressed);
    EXPECT_TRUE(
        Kept().validationText.endsWith(u'(' + version + QStringLiteral(")\r\nwar erfolgreich!")))
        << Kept().validationText.toStdString();
  };
  QByteArray changed = bytes_;
  expectVersion(changed.replace("CDM_VERSION=\"5.2.0\"", "CDM_VERSION=\"7.8.9\""),
                QStringLiteral("7.8.9"));
  changed = bytes_;
  expectVersion(changed.replace("CDM_VERSION=\"5.2.0\"", "Version=\"1.2\" cdm_Version=\"3.4\""),
                QStringLiteral("3.4"));
  changed = bytes_;
  expectVersion(changed.replace("CDM_VERSION=\"5.2.0\"", "version=\"1.2\""), QStringLiteral("1.2"));
  changed = bytes_;
  expectVersion(changed.replace("CDM_VERSION=\"5.2.0\"", ""), QString());
}

TEST_P(VsdDecoder, LeavesNoFileBehind) {
  const QTemporaryDir directory;
  const QByteArray previous = qgetenv("TMPDIR");
  const QString workingDirectory = QDir::currentPath();
  qputenv("TMPDIR", directory.path().toLocal8Bit());
  ASSERT_TRUE(QDir::setCurrent(directory.path()));
  fixture_.eventLoop.onYield = [&] {
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList());
  };
  EXPECT_EQ(Run(member_), VsdResult::Decompressed);
  EXPECT_EQ(Run(test::Gzip(QByteArray(40000, ' '))), VsdResult::NotDecompressed);
  EXPECT_EQ(Run(QByteArray::fromHex("1F8B0700")), VsdResult::NotDecompressed);
  EXPECT_EQ(fixture_.eventLoop.yields, 3);
  EXPECT_FALSE(QDir(test::ProgramDirectory()).exists(QStringLiteral("Daten.xml.gz")));
  QDir::setCurrent(workingDirectory);
  if (previous.isNull()) {
    qunsetenv("TMPDIR");
  } else {
    qputenv("TMPDIR", previous);
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, VsdDecoder, testing::ValuesIn(KindRows), [](const auto& row) {
  return test::KindName(row.param.kind).toStdString();
});

// Only a PD and a VD write elements of the insured person's data.
TEST(VsdDecoderTogether, TheThreeKindsFillOneList) {
  test::VsdFixture fixture;
  fixture.ValidateWithOwnSchemas();
  for (const KindRow& row : KindRows) {
    EXPECT_EQ(fixture.Decompress(row.kind, test::Gzip(test::ReadDocument(row.document))),
              VsdResult::Decompressed);
  }
  EXPECT_EQ(fixture.insured[Element::InsurerNumber], QStringLiteral("109500969"));
  EXPECT_EQ(fixture.insured[Element::LastName], QStringLiteral("O"));
  for (const VsdDocument& document : fixture.egk.documents) EXPECT_FALSE(document.notValidated);
}

}  // namespace
}  // namespace kartocheck
