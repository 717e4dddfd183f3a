#include "platform/documents/xml_schema.h"

#include <libxml/xmlschemas.h>

#include "platform/documents/c_handle.h"
#include "platform/documents/xml_errors.h"

namespace kartocheck {

namespace {

bool ReadsOtherSchemas(const XmlElement& element) {
  const QString Xsd = QStringLiteral("http://www.w3.org/2001/XMLSchema");
  for (XmlElement child = element.FirstChild(); child; child = child.Next()) {
    const std::string_view name = child.LocalName();
    const bool names = name == "import" || name == "include" || name == "redefine";
    if (names && child.NamespaceUri() == Xsd) return true;
    if (ReadsOtherSchemas(child)) return true;
  }
  return false;
}

}  // namespace

void XmlSchema::Deleter::operator()(_xmlSchema* schema) const {
  xmlSchemaFree(schema);
}

std::optional<XmlSchema> XmlSchema::Compile(XmlDocument document) {
  if (ReadsOtherSchemas(document.Root())) return std::nullopt;
  const QuietXmlErrors quiet;
  const CHandle<xmlSchemaFreeParserCtxt> parser(xmlSchemaNewDocParserCtxt(document.tree_.get()));
  if (!parser) return std::nullopt;
  xmlSchemaSetParserStructuredErrors(parser.get(), IgnoreXmlError, nullptr);
  xmlSchema* const compiled = xmlSchemaParse(parser.get());
  if (compiled == nullptr) return std::nullopt;
  return XmlSchema(std::move(document), compiled);
}

bool XmlSchema::Accepts(const XmlDocument& document) const {
  const QuietXmlErrors quiet;
  const CHandle<xmlSchemaFreeValidCtxt> validator(xmlSchemaNewValidCtxt(compiled_.get()));
  if (!validator) return false;
  xmlSchemaSetValidStructuredErrors(validator.get(), IgnoreXmlError, nullptr);
  return xmlSchemaValidateDoc(validator.get(), document.tree_.get()) == 0;
}

}  // namespace kartocheck
