#include "platform/documents/xml_schema.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <initializer_list>

#include "support/printing.h"

namespace kartocheck {
namespace {

constexpr QStringView Opening =
    u"<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" targetNamespace=\"urn:t\" "
    u"elementFormDefault=\"qualified\">";
constexpr QStringView Number = u"<xs:element name=\"zahl\" type=\"xs:int\"/>";
constexpr QStringView Closing = u"</xs:schema>";

std::optional<XmlSchema> Compiled(const QString& text) {
  std::optional<XmlDocument> document = XmlDocument::Parse(text);
  if (!document) {
    ADD_FAILURE() << "not well-formed";
    return std::nullopt;
  }
  return XmlSchema::Compile(std::move(*document));
}

QString Joined(std::initializer_list<QStringView> pieces) {
  QString text;
  for (const QStringView piece : pieces) text += piece;
  return text;
}

QString SchemaWith(QStringView content) {
  return Joined({Opening, content, Closing});
}

TEST(XmlSchema, AcceptsValidDocumentsOnly) {
  const auto schema = Compiled(SchemaWith(Number));
  ASSERT_TRUE(schema);
  testing::internal::CaptureStderr();
  EXPECT_TRUE(schema->Accepts(*XmlDocument::Parse(u"<zahl xmlns='urn:t'>12</zahl>")));
  EXPECT_TRUE(schema->Accepts(*XmlDocument::Parse(u"<p:zahl xmlns:p='urn:t'>-1</p:zahl>")));
  EXPECT_FALSE(schema->Accepts(*XmlDocument::Parse(u"<zahl xmlns='urn:t'>viele</zahl>")));
  EXPECT_FALSE(schema->Accepts(*XmlDocument::Parse(u"<zahl>12</zahl>")));
  EXPECT_FALSE(schema->Accepts(*XmlDocument::Parse(u"<Zahl xmlns='urn:t'>12</Zahl>")));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(XmlSchema, AMovedSchemaStillAccepts) {
  auto schema = Compiled(SchemaWith(Number));
  ASSERT_TRUE(schema);
  const XmlSchema moved = std::move(*schema);
  EXPECT_TRUE(moved.Accepts(*XmlDocument::Parse(u"<zahl xmlns='urn:t'>12</zahl>")));
}

TEST(XmlSchema, RefusesWhatDoesNotCompileAndPrintsNothing) {
  testing::internal::CaptureStderr();
  EXPECT_FALSE(Compiled(QStringLiteral("<a/>")));
  EXPECT_FALSE(Compiled(SchemaWith(u"<xs:element name='a' type='xs:gibtEsNicht'/>")));
  EXPECT_FALSE(Compiled(SchemaWith(
      u"<xs:simpleType name='a'><xs:restriction base='xs:string'><xs:pattern value='[0-9'/>"
      u"</xs:restriction></xs:simpleType>")));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// Each would compile if the other schema were read.
TEST(XmlSchema, StandsAlone) {
  const QTemporaryDir directory;
  QFile other(directory.filePath(QStringLiteral("other.xsd")));
  ASSERT_TRUE(other.open(QIODevice::WriteOnly));
  other.write(SchemaWith(Number).toUtf8());
  other.close();
  const QString location = Joined({u"schemaLocation=\"", other.fileName(), u"\"/>"});
  EXPECT_FALSE(Compiled(SchemaWith(Joined({u"<xs:include ", location}))));
  EXPECT_FALSE(Compiled(SchemaWith(Joined({u"<xs:redefine ", location}))));
  EXPECT_FALSE(Compiled(SchemaWith(Joined({u"<xs:import namespace='urn:u' ", location}))));
  EXPECT_FALSE(Compiled(SchemaWith(Joined({u"<xs:import namespace='urn:u'/>", Number}))));
  // The names are harmless elsewhere.
  EXPECT_TRUE(Compiled(SchemaWith(
      Joined({u"<xs:annotation><xs:appinfo><include xmlns='urn:x'/></xs:appinfo></xs:annotation>",
              Number}))));
}

TEST(XmlSchema, ReadsNoSchemaThatADocumentNames) {
  const auto schema = Compiled(SchemaWith(Number));
  ASSERT_TRUE(schema);
  const QTemporaryDir directory;
  QFile other(directory.filePath(QStringLiteral("other.xsd")));
  ASSERT_TRUE(other.open(QIODevice::WriteOnly));
  other.write(SchemaWith(u"<xs:element name='frei'/>").toUtf8());
  other.close();
  const QString document =
      QStringLiteral(
          "<frei xmlns=\"urn:t\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
          "xsi:schemaLocation=\"urn:t %1\"/>")
          .arg(other.fileName());
  EXPECT_FALSE(schema->Accepts(*XmlDocument::Parse(document)));
}

}  // namespace
}  // namespace kartocheck
