#include "egk/vsd_schema.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <string>

#include "egk/prepared_schema.h"
#include "egk/vsd_documents.h"
#include "support/printing.h"

namespace kartocheck {
namespace {

constexpr QStringView DataNamespace = u"http://ws.gematik.de/fa/vsdm/vsd/v5.2";

void WriteFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_EQ(file.write(bytes), bytes.size());
}

// Reading

struct ReadRow {
  const char* sentence;
  QByteArray bytes;
  QString text;
};

class SchemaFile : public testing::TestWithParam<ReadRow> {};

TEST_P(SchemaFile, IsReadFromItsFirstAngleBracketOn) {
  const QTemporaryDir directory;
  const QString path = directory.filePath(QStringLiteral("s.xsd"));
  WriteFile(path, GetParam().bytes);
  EXPECT_EQ(ReadSchemaText(path), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SchemaFile,
    testing::Values(ReadRow{"Plain", "<a/>", QStringLiteral("<a/>")},
                    ReadRow{"TextBefore", "\r\nText vorher<a/> danach",
                            QStringLiteral("<a/> danach")},
                    ReadRow{"ByteOrderMark", "\xEF\xBB\xBF<a/>", QStringLiteral("<a/>")},
                    ReadRow{"Utf8", "<a>\xC3\xA4\xE2\x82\xAC</a>", QStringLiteral("<a>ä€</a>")},
                    ReadRow{"CodePage", "<a>\xE4\xA4</a>", QStringLiteral("<a>ä€</a>")},
                    ReadRow{"Utf16", QByteArray("\xFF\xFE<\0\xE4\0", 6), QStringLiteral("<ä")},
                    ReadRow{"NoBracket", "nichts", QString()},
                    ReadRow{"Empty", QByteArray(), QString()}),
    [](const auto& row) { return std::string(row.param.sentence); });

TEST(SchemaText, IsEmptyWhereThereIsNoFile) {
  EXPECT_EQ(ReadSchemaText(QStringLiteral("gibt_es_nicht.xsd")), QString());
  EXPECT_EQ(ReadSchemaText(QDir::tempPath()), QString());
}

TEST(SchemaText, IsThatOfTheFirstDirectoryThatHasTheFile) {
  const QTemporaryDir first;
  const QTemporaryDir second;
  const QString name = QStringLiteral("UC_allgemeineVersicherungsdatenXML.xsd");
  const QStringList directories{QStringLiteral("/gibt/es/nicht"), first.path(), second.path()};
  EXPECT_EQ(FindSchemaText(VsdKind::Vd, directories), QString());
  WriteFile(second.filePath(name), "<zweites/>");
  EXPECT_EQ(FindSchemaText(VsdKind::Vd, directories), QStringLiteral("<zweites/>"));
  WriteFile(first.filePath(name), "<erstes/>");
  EXPECT_EQ(FindSchemaText(VsdKind::Vd, directories), QStringLiteral("<erstes/>"));
  EXPECT_EQ(FindSchemaText(VsdKind::Pd, directories), QString());
  EXPECT_EQ(FindSchemaText(VsdKind::Vd, {}), QString());
}

TEST(SchemaText, OfEachKindHasItsFileName) {
  const QTemporaryDir directory;
  WriteFile(directory.filePath(QStringLiteral("UC_PersoenlicheVersichertendatenXML.xsd")), "<pd/>");
  WriteFile(directory.filePath(QStringLiteral("UC_allgemeineVersicherungsdatenXML.xsd")), "<vd/>");
  WriteFile(directory.filePath(QStringLiteral("UC_geschuetzteVersichertendatenXML.xsd")), "<gvd/>");
  ValidationSettings settings;
  LoadSchemas(settings, {directory.path()});
  EXPECT_EQ(settings.schemas[VsdKind::Pd].Text(), QStringLiteral("<pd/>"));
  EXPECT_EQ(settings.schemas[VsdKind::Vd].Text(), QStringLiteral("<vd/>"));
  EXPECT_EQ(settings.schemas[VsdKind::Gvd].Text(), QStringLiteral("<gvd/>"));
  EXPECT_FALSE(settings.isOn);
  LoadSchemas(settings, {});
  for (const HeldSchema& schema : settings.schemas) EXPECT_EQ(schema.Text(), QString());
}

// The program's own

TEST(OwnSchemas, StandInTheProgramsDirectoryAndFixVersionFiveTwo) {
  ValidationSettings built;
  LoadSchemas(built, {test::ProgramDirectory()});
  ValidationSettings source;
  LoadSchemas(source, {test::OwnSchemaDirectory()});
  for (const VsdKind kind : {VsdKind::Pd, VsdKind::Vd, VsdKind::Gvd}) {
    EXPECT_FALSE(source.schemas[kind].Text().isEmpty());
    EXPECT_EQ(built.schemas[kind].Text(), source.schemas[kind].Text());
    const PreparedSchema& prepared = source.schemas[kind].Prepared();
    EXPECT_EQ(prepared.Version(), QStringLiteral("5.2.0"));
    EXPECT_NE(prepared.For(DataNamespace.toString()), nullptr);
  }
}

// Preparing

TEST(HeldSchema, IsPreparedOnceForEachText) {
  HeldSchema schema;
  EXPECT_FALSE(schema.Prepared().HasRoot());
  schema.SetText(QStringLiteral("<a/>"));
  const PreparedSchema* const first = &schema.Prepared();
  EXPECT_TRUE(first->HasRoot());
  EXPECT_EQ(&schema.Prepared(), first);
  schema.SetText(QStringLiteral("<a/>"));
  EXPECT_EQ(&schema.Prepared(), first);
  schema.SetText(QStringLiteral("<a"));
  EXPECT_FALSE(schema.Prepared().HasRoot());
}

PreparedSchema FromFile(const char* name) {
  return PreparedSchema(
      ReadSchemaText(test::DocumentPath(QStringLiteral("schemas/") + QString::fromLatin1(name))));
}

TEST(PreparedSchema, IsForItsTargetNamespace) {
  const PreparedSchema schema = FromFile("any_content.xsd");
  EXPECT_TRUE(schema.IsUsable());
  EXPECT_NE(schema.For(DataNamespace.toString()), nullptr);
  EXPECT_EQ(schema.For(QStringLiteral("urn:erfunden")), nullptr);
  EXPECT_EQ(schema.For(QString()), nullptr);
}

TEST(PreparedSchema, IsForTheNamespacesItDeclares) {
  const PreparedSchema schema = FromFile("declares_other.xsd");
  EXPECT_NE(schema.For(QStringLiteral("urn:erfunden")), nullptr);
  EXPECT_NE(schema.For(DataNamespace.toString()), nullptr);
  EXPECT_NE(schema.For(QStringLiteral("http://www.w3.org/2001/XMLSchema")), nullptr);
  EXPECT_EQ(schema.For(QStringLiteral("urn:anders")), nullptr);
}

TEST(PreparedSchema, IsForTheNamespacesThatItDeclaresBelowItsRoot) {
  const PreparedSchema schema(
      u"<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:t'>"
      u"<xs:element name='a'><xs:annotation><xs:appinfo><tief xmlns='urn:tief'/></xs:appinfo>"
      u"</xs:annotation></xs:element></xs:schema>");
  EXPECT_NE(schema.For(QStringLiteral("urn:tief")), nullptr);
}

TEST(PreparedSchema, WithoutTargetNamespaceIsForDocumentsInNone) {
  EXPECT_NE(FromFile("no_namespace.xsd").For(QString()), nullptr);
  // Declaring no namespace declares none.
  const PreparedSchema schema(
      u"<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' xmlns='' targetNamespace='urn:t'>"
      u"<xs:element name='a'/></xs:schema>");
  EXPECT_NE(schema.For(QStringLiteral("urn:t")), nullptr);
  EXPECT_EQ(schema.For(QString()), nullptr);
}

TEST(PreparedSchema, ThatDoesNotCompileIsForNoDocumentAndHasARoot) {
  for (const char* const name :
       {"no_schema.xsd", "unknown_type.xsd", "broken_pattern.xsd", "includes_missing.xsd",
        "includes_other.xsd", "imports_other.xsd", "redefines_other.xsd"}) {
    const PreparedSchema schema = FromFile(name);
    EXPECT_TRUE(schema.HasRoot()) << name;
    EXPECT_FALSE(schema.IsUsable()) << name;
    EXPECT_EQ(schema.For(DataNamespace.toString()), nullptr) << name;
  }
}

TEST(PreparedSchema, ThatIsNoDocumentHasNoRoot) {
  for (const char* const name : {"not_well_formed.xsd", "document_type.xsd"}) {
    const PreparedSchema schema = FromFile(name);
    EXPECT_FALSE(schema.HasRoot()) << name;
    EXPECT_FALSE(schema.IsUsable()) << name;
    EXPECT_EQ(schema.For(DataNamespace.toString()), nullptr) << name;
    EXPECT_EQ(schema.Version(), QString()) << name;
  }
}

TEST(PreparedSchema, OfTenThousandLevelsIsNone) {
  const QString levels = QStringLiteral("<a>").repeated(10'000);
  const QString closing = QStringLiteral("</a>").repeated(10'000);
  EXPECT_FALSE(PreparedSchema(QString(levels + closing)).HasRoot());
}

// Versions

struct VersionRow {
  const char* sentence;
  QString content;
  QString version;
};

class SchemaVersion : public testing::TestWithParam<VersionRow> {};

TEST_P(SchemaVersion, IsFoundAmongChildrenAndTheirChildren) {
  EXPECT_EQ(
      PreparedSchema(QString(u"<s xmlns:x='urn:x'>" % GetParam().content % u"</s>")).Version(),
      GetParam().version);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SchemaVersion,
    testing::Values(
        VersionRow{"Child", QStringLiteral("<attribute name='CDM_VERSION' fixed='1.0'/>"),
                   QStringLiteral("1.0")},
        VersionRow{"Grandchild",
                   QStringLiteral("<c><attribute name='CDM_VERSION' fixed='1.0'/></c>"),
                   QStringLiteral("1.0")},
        VersionRow{"TooDeep",
                   QStringLiteral("<c><d><attribute name='CDM_VERSION' fixed='1.0'/></d></c>"),
                   QString()},
        VersionRow{"PrefixAndCase",
                   QStringLiteral("<x:Attribute use='required' x:FIXED='2.1' Name='cdm_version'/>"),
                   QStringLiteral("2.1")},
        VersionRow{"ReferencedByWhicheverAttribute",
                   QStringLiteral("<attribute ref='CDM_VERSION' fixed='3'/>"), QStringLiteral("3")},
        VersionRow{"OtherAttribute", QStringLiteral("<attribute name='CDM_VERSIONS' fixed='1.0'/>"),
                   QString()},
        VersionRow{"OtherElement", QStringLiteral("<element name='CDM_VERSION' fixed='1.0'/>"),
                   QString()},
        VersionRow{"NotFixed", QStringLiteral("<attribute name='CDM_VERSION'/>"), QString()},
        VersionRow{"NotFixedButAnElement",
                   QStringLiteral("<Version>4</Version><attribute name='CDM_VERSION'/>"),
                   QString()},
        VersionRow{"TheFirstDeclaration",
                   QStringLiteral("<attribute name='CDM_VERSION' fixed='1'/>"
                                  "<attribute name='CDM_VERSION' fixed='2'/>"),
                   QStringLiteral("1")},
        VersionRow{"VersionElement", QStringLiteral("<x:Version>5.5</x:Version>"),
                   QStringLiteral("5.5")},
        VersionRow{"VersionElementBelow", QStringLiteral("<c><version>5.6</version></c>"),
                   QStringLiteral("5.6")},
        VersionRow{"VersionElementTooDeep", QStringLiteral("<c><d><version>5.6</version></d></c>"),
                   QString()},
        VersionRow{"DeclarationBeforeElement",
                   QStringLiteral("<Version>5.5</Version>"
                                  "<c><attribute name='CDM_VERSION' fixed='1.0'/></c>"),
                   QStringLiteral("1.0")},
        VersionRow{"Nothing", QString(), QString()}),
    [](const auto& row) { return std::string(row.param.sentence); });

}  // namespace
}  // namespace kartocheck
