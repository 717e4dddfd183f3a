#include "platform/documents/xml_document.h"

#include <gtest/gtest.h>
#include <string>

#include "support/printing.h"

namespace kartocheck {
namespace {

QString Nested(int levels) {
  return QStringLiteral("<a>").repeated(levels) + QStringLiteral("</a>").repeated(levels);
}

TEST(XmlDocument, GivesElementsAttributesAndNamespaces) {
  const auto document = XmlDocument::Parse(
      u"<?xml version=\"1.0\"?><!-- c --><r xmlns='urn:d' xmlns:p='urn:p' a='1' p:B='&#228;2'>"
      u"text <p:Kind>x</p:Kind><?pi?><leer/>&amp;<![CDATA[<]]></r>");
  ASSERT_TRUE(document);
  const XmlElement root = document->Root();
  EXPECT_EQ(root.LocalName(), "r");
  EXPECT_EQ(root.NamespaceUri(), QStringLiteral("urn:d"));
  EXPECT_EQ(root.DeclaredNamespaces(),
            QStringList({QStringLiteral("urn:d"), QStringLiteral("urn:p")}));
  EXPECT_EQ(root.Text(), QStringLiteral("text x&<"));

  const XmlAttribute first = root.FirstAttribute();
  ASSERT_TRUE(first);
  EXPECT_EQ(first.LocalName(), "a");
  EXPECT_EQ(first.Text(), QStringLiteral("1"));
  const XmlAttribute second = first.Next();
  ASSERT_TRUE(second);
  EXPECT_EQ(second.LocalName(), "B");
  EXPECT_EQ(second.Text(), QStringLiteral("ä2"));
  EXPECT_FALSE(second.Next());

  const XmlElement child = root.FirstChild();
  ASSERT_TRUE(child);
  EXPECT_EQ(child.LocalName(), "Kind");
  EXPECT_EQ(child.NamespaceUri(), QStringLiteral("urn:p"));
  EXPECT_EQ(child.Text(), QStringLiteral("x"));
  EXPECT_FALSE(child.FirstChild());
  EXPECT_FALSE(child.FirstAttribute());
  const XmlElement empty = child.Next();
  ASSERT_TRUE(empty);
  EXPECT_EQ(empty.Text(), QString());
  EXPECT_FALSE(empty.Next());
}

TEST(XmlDocument, ElementsWithoutNamespaceHaveAnEmptyUri) {
  const auto document = XmlDocument::Parse(u"<a/>");
  ASSERT_TRUE(document);
  EXPECT_EQ(document->Root().NamespaceUri(), QString());
  EXPECT_EQ(document->Root().DeclaredNamespaces(), QStringList());
}

TEST(XmlDocument, OwnXmlIsTheElementWithoutTheDeclaration) {
  const auto document = XmlDocument::Parse(
      u"<?xml version=\"1.0\" encoding=\"ISO-8859-15\" standalone=\"yes\"?>\r\n<!-- vor -->"
      u"<p:r xmlns:p=\"urn:p\" a=\"Käse €\">\r\n <p:ü>Größe €</p:ü></p:r><!-- nach -->");
  ASSERT_TRUE(document);
  EXPECT_EQ(document->Root().OwnXml(),
            QStringLiteral("<p:r xmlns:p=\"urn:p\" a=\"Käse €\">\n <p:ü>Größe €</p:ü></p:r>"));
}

TEST(XmlDocument, AMovedDocumentKeepsItsElements) {
  auto document = XmlDocument::Parse(u"<a>x</a>");
  ASSERT_TRUE(document);
  const XmlElement root = document->Root();
  const XmlDocument moved = std::move(*document);
  EXPECT_EQ(root.Text(), QStringLiteral("x"));
  EXPECT_EQ(moved.Root().Text(), QStringLiteral("x"));
}

struct EncodingRow {
  const char* sentence;
  QStringView declaration;
  bool isTaken;
};

class DeclaredEncoding : public testing::TestWithParam<EncodingRow> {};

// Umlauts show whether a declared encoding was applied to the Unicode text.
TEST_P(DeclaredEncoding, IsCheckedAndNotApplied) {
  const auto document =
      XmlDocument::Parse(QString(GetParam().declaration % QStringView(u"<a>Ähö€</a>")));
  EXPECT_EQ(document.has_value(), GetParam().isTaken);
  if (document) {
    EXPECT_EQ(document->Root().Text(), QStringLiteral("Ähö€"));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DeclaredEncoding,
    testing::Values(
        EncodingRow{"NoDeclaration", u"", true},
        EncodingRow{"NoEncoding", u"<?xml version=\"1.0\"?>", true},
        EncodingRow{"CardEncoding", u"<?xml version=\"1.0\" encoding=\"ISO-8859-15\"?>", true},
        EncodingRow{"CardEncodingInLowerCase",
                    u"<?xml version=\"1.0\" encoding=\"iso-8859-15\" standalone=\"yes\"?>", true},
        EncodingRow{"SingleQuotesAndBlanks", u"<?xml version='1.0'\r\n\tencoding = 'ISO-8859-1' ?>",
                    true},
        EncodingRow{"LastOfTheFamily", u"<?xml version=\"1.0\" encoding=\"ISO-8859-16\"?>", true},
        EncodingRow{"BehindTheFamily", u"<?xml version=\"1.0\" encoding=\"ISO-8859-17\"?>", false},
        EncodingRow{"BeforeTheFamily", u"<?xml version=\"1.0\" encoding=\"ISO-8859-0\"?>", false},
        EncodingRow{"FamilyWithZero", u"<?xml version=\"1.0\" encoding=\"ISO-8859-01\"?>", false},
        EncodingRow{"FamilyAlone", u"<?xml version=\"1.0\" encoding=\"ISO-8859-\"?>", false},
        EncodingRow{"Utf8", u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>", true},
        EncodingRow{"Utf8InLowerCase", u"<?xml version=\"1.0\" encoding=\"utf-8\"?>", true},
        EncodingRow{"Utf16", u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>", true},
        EncodingRow{"Utf16InLowerCase", u"<?xml version=\"1.0\" encoding=\"utf-16\"?>", true},
        EncodingRow{"UsAscii", u"<?xml version=\"1.0\" encoding=\"US-ASCII\"?>", true},
        EncodingRow{"FirstWindows", u"<?xml version=\"1.0\" encoding=\"windows-1250\"?>", true},
        EncodingRow{"LastWindows", u"<?xml version=\"1.0\" encoding=\"Windows-1258\"?>", true},
        EncodingRow{"BehindWindows", u"<?xml version=\"1.0\" encoding=\"windows-1259\"?>", false},
        EncodingRow{"Ebcdic", u"<?xml version=\"1.0\" encoding=\"IBM037\"?>", false},
        EncodingRow{"Utf16WithByteOrder", u"<?xml version=\"1.0\" encoding=\"UTF-16LE\"?>", false},
        EncodingRow{"Utf7", u"<?xml version=\"1.0\" encoding=\"UTF-7\"?>", false},
        EncodingRow{"Invented", u"<?xml version=\"1.0\" encoding=\"X-ERFUNDEN\"?>", false},
        EncodingRow{"Empty", u"<?xml version=\"1.0\" encoding=\"\"?>", false},
        EncodingRow{"NotQuoted", u"<?xml version=\"1.0\" encoding=UTF-8?>", false},
        EncodingRow{"NotClosed", u"<?xml version=\"1.0\" encoding=\"UTF-8?>", false},
        EncodingRow{"OfAnotherInstruction", u"<?xmlx encoding=\"X-ERFUNDEN\"?>", true}),
    [](const auto& row) { return std::string(row.param.sentence); });

struct RefusedRow {
  const char* sentence;
  QString text;
};

class RefusedText : public testing::TestWithParam<RefusedRow> {};

TEST_P(RefusedText, IsNoDocumentAndPrintsNothing) {
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  EXPECT_FALSE(XmlDocument::Parse(GetParam().text));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RefusedText,
    testing::Values(
        RefusedRow{"Empty", QString()}, RefusedRow{"BlanksOnly", QStringLiteral(" \r\n")},
        RefusedRow{"TextOnly", QStringLiteral("Text")},
        RefusedRow{"DeclarationOnly", QStringLiteral("<?xml version=\"1.0\"?>")},
        RefusedRow{"TwoRoots", QStringLiteral("<a/><b/>")},
        RefusedRow{"NotClosed", QStringLiteral("<a><b></a>")},
        RefusedRow{"NulInText", QStringLiteral("<a>x") + QChar(u'\0') + QStringLiteral("y</a>")},
        RefusedRow{"NulBehindTheRoot", QStringLiteral("<a/>") + QChar(u'\0')},
        RefusedRow{"ControlCharacter", QStringLiteral("<a>\u000B</a>")},
        RefusedRow{"LoneSurrogate",
                   QStringLiteral("<a>") + QChar(0xD800) + QChar(0xFFFF) + QStringLiteral("</a>")},
        RefusedRow{"UndefinedEntity", QStringLiteral("<a>&b;</a>")},
        RefusedRow{"TextBeforeTheDeclaration", QStringLiteral("ï»¿<?xml version=\"1.0\"?><a/>")},
        RefusedRow{"UndeclaredPrefix", QStringLiteral("<a><p:b/></a>")},
        RefusedRow{"UndeclaredPrefixOfAnAttribute", QStringLiteral("<a p:b='1'/>")},
        RefusedRow{"DocumentType", QStringLiteral("<!DOCTYPE a><a/>")},
        RefusedRow{"DocumentTypeInLine", QStringLiteral("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>")},
        RefusedRow{"DocumentTypeWithEntity",
                   QStringLiteral("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>")},
        RefusedRow{"DocumentTypeOfAFile",
                   QStringLiteral("<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>")},
        RefusedRow{"TenThousandLevels", Nested(10'000)},
        RefusedRow{"AHundredThousandOpened", QStringLiteral("<a>").repeated(100'000)},
        RefusedRow{"OneLevelTooMany", Nested(257)}),
    [](const auto& row) { return std::string(row.param.sentence); });

TEST(XmlDocument, TakesTheDeepestDocumentThatIsAllowed) {
  const auto document = XmlDocument::Parse(Nested(256));
  ASSERT_TRUE(document);
  EXPECT_EQ(document->Root().OwnXml().size(), Nested(256).size() - 3);  // the innermost is <a/>
  EXPECT_EQ(document->Root().Text(), QString());
}

}  // namespace
}  // namespace kartocheck
