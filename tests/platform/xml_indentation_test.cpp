#include "platform/documents/xml_indentation.h"

#include <gtest/gtest.h>

#include "platform/documents/xml_document.h"
#include "support/printing.h"

namespace kartocheck {
namespace {

QString Nested(int levels) {
  return QStringLiteral("<a>").repeated(levels) + QStringLiteral("</a>").repeated(levels);
}

TEST(XmlIndentation, PutsEachElementOnALineOfItsOwn) {
  EXPECT_EQ(IndentedXml(u"<?xml version=\"1.0\" encoding=\"ISO-8859-15\" standalone=\"yes\"?>"
                        u"<p:r xmlns:p=\"urn:p\" a='1 &amp; 2'><p:Kind>Jörg &lt;Ä&gt; &amp; "
                        u"Söhne</p:Kind><p:leer/>\r\n\t<b><c>1</c><!-- x --></b></p:r>"),
            u"<?xml version=\"1.0\" encoding=\"ISO-8859-15\" standalone=\"yes\"?>\n"
            u"<p:r xmlns:p=\"urn:p\" a=\"1 &amp; 2\">\n"
            u"  <p:Kind>Jörg &lt;Ä&gt; &amp; Söhne</p:Kind>\n"
            u"  <p:leer></p:leer>\n"
            u"  <b>\n"
            u"    <c>1</c>\n"
            u"    <!-- x -->\n"
            u"  </b>\n"
            u"</p:r>");
}

TEST(XmlIndentation, ADocumentWithoutADeclarationBeginsWithItsRoot) {
  EXPECT_EQ(IndentedXml(u"<a><b/></a>"), u"<a>\n  <b></b>\n</a>");
}

TEST(XmlIndentation, KeepsTextsBesideElements) {
  EXPECT_EQ(IndentedXml(u"<a>vor<b>in</b> nach </a>"), u"<a>vor\n  <b>in</b>\n  nach\n</a>");
  EXPECT_EQ(IndentedXml(u"<a><![CDATA[<x>]]></a>"), u"<a>&lt;x&gt;</a>");
}

// What is indented stays the same document, and indenting it again changes nothing.
TEST(XmlIndentation, IsTheSameDocument) {
  const QStringView text =
      u"<?xml version=\"1.0\"?><UC x='&quot;a&quot;'><A>1</A><B><C> 2 3 </C></B></UC>";
  const auto indented = IndentedXml(text);
  ASSERT_TRUE(indented);
  EXPECT_EQ(IndentedXml(*indented), indented);
  const auto document = XmlDocument::Parse(*indented);
  ASSERT_TRUE(document);
  EXPECT_EQ(document->Root().FirstAttribute().Text(), u"\"a\"");
  EXPECT_EQ(document->Root().FirstChild().Next().FirstChild().Text(), u" 2 3 ");
}

TEST(XmlIndentation, LeavesWhatIsNoDocument) {
  for (const auto* text :
       {u"", u"kein XML", u"<a>", u"<a></b>", u"<a/><b/>", u"<a>&fremd;</a>", u"<a>\x1</a>",
        u"<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>", u"<!DOCTYPE a><a/>", u"<?xml <a/>"}) {
    EXPECT_EQ(IndentedXml(text), std::nullopt) << QStringView(text).toString().toStdString();
  }
}

TEST(XmlIndentation, EndsWithTheDepthThatDocumentsMayHave) {
  EXPECT_TRUE(IndentedXml(Nested(XmlDocument::MaxDepth)));
  EXPECT_FALSE(IndentedXml(Nested(XmlDocument::MaxDepth + 1)));
}

}  // namespace
}  // namespace kartocheck
