#include "platform/documents/xml_document.h"

#include <algorithm>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "platform/documents/c_handle.h"
#include "platform/documents/xml_errors.h"

namespace kartocheck {

namespace {

constexpr int ParseOptions = XML_PARSE_NONET | XML_PARSE_IGNORE_ENC | XML_PARSE_COMPACT |
                             XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

const char* CharsOf(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

QString TextOfXml(const xmlChar* text) {
  return text == nullptr ? QString() : QString::fromUtf8(CharsOf(text));
}

// The element behind `node` (itself included) among its siblings.
const xmlNode* ElementFrom(const xmlNode* node) {
  while (node != nullptr && node->type != XML_ELEMENT_NODE) node = node->next;
  return node;
}

// The text of an element or an attribute, from its children.
template <typename Node>
QString ContentOf(const Node* node) {
  const xmlNode* only = node->children;
  if (only == nullptr) return {};
  if (only->next == nullptr && only->type == XML_TEXT_NODE) return TextOfXml(only->content);
  // Declared without const, yet it changes nothing.
  xmlChar* const content =
      xmlNodeGetContent(reinterpret_cast<xmlNode*>(const_cast<Node*>(node)));  // NOLINT
  QString text = TextOfXml(content);
  xmlFree(content);
  return text;
}

bool IsXmlBlank(QChar character) {
  return character == u' ' || character == u'\t' || character == u'\r' || character == u'\n';
}

QStringView SkipBlanks(QStringView text) {
  while (!text.isEmpty() && IsXmlBlank(text.front())) text = text.sliced(1);
  return text;
}

// The encoding that the XML declaration names; empty where it names none. The parser checks the
// rest of the declaration, so that the first "encoding" in it is the right one.
QStringView DeclaredEncoding(QStringView text) {
  static constexpr QStringView Opening = u"<?xml";
  static constexpr QStringView Keyword = u"encoding";
  if (!text.startsWith(Opening)) return {};
  const qsizetype end = text.indexOf(u"?>");
  if (end < Opening.size() + 1 || !IsXmlBlank(text.at(Opening.size()))) return {};
  QStringView rest = text.first(end);
  const qsizetype keyword = rest.indexOf(Keyword);
  if (keyword < 0) return {};
  rest = SkipBlanks(rest.sliced(keyword + Keyword.size()));
  if (!rest.startsWith(u'=')) return {};
  rest = SkipBlanks(rest.sliced(1));
  if (rest.isEmpty()) return {};
  const qsizetype close = rest.indexOf(rest.front(), 1);
  return close < 0 ? QStringView() : rest.sliced(1, close - 1);
}

// `name` is the prefix and a number from first to last.
bool IsNumbered(QStringView name, QStringView prefix, int first, int last) {
  if (!name.startsWith(prefix, Qt::CaseInsensitive)) return false;
  const QStringView digits = name.sliced(prefix.size());
  for (int number = first; number <= last; ++number) {
    if (digits == QString::number(number)) return true;
  }
  return false;
}

bool IsKnownEncoding(QStringView name) {
  const auto is = [name](QStringView known) {
    return name.compare(known, Qt::CaseInsensitive) == 0;
  };
  return is(u"UTF-8") || is(u"UTF-16") || is(u"US-ASCII") ||
         IsNumbered(name, u"ISO-8859-", 1, 16) || IsNumbered(name, u"windows-", 1250, 1258);
}

// The recursion ends one level below the limit.
bool NestsDeeperThan(int limit, const xmlNode* element) {
  if (limit == 0) return true;
  for (const xmlNode* child = ElementFrom(element->children); child != nullptr;
       child = ElementFrom(child->next)) {
    if (NestsDeeperThan(limit - 1, child)) return true;
  }
  return false;
}

// A prefix without a namespace stays in the name. The parser goes on after it.
bool HasUndeclaredPrefix(const xmlNode* element) {
  const auto isPrefixed = [](const xmlChar* name) { return xmlStrchr(name, ':') != nullptr; };
  if (isPrefixed(element->name)) return true;
  for (const xmlAttr* attribute = element->properties; attribute != nullptr;
       attribute = attribute->next) {
    if (isPrefixed(attribute->name)) return true;
  }
  for (const xmlNode* child = ElementFrom(element->children); child != nullptr;
       child = ElementFrom(child->next)) {
    if (HasUndeclaredPrefix(child)) return true;
  }
  return false;
}

// The parser calls this before it reads the first declaration of a document type.
void RefuseDocumentType(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
  auto* const parser = static_cast<xmlParserCtxt*>(context);
  parser->wellFormed = 0;
  xmlStopParser(parser);
}

}  // namespace

std::string_view XmlAttribute::LocalName() const {
  return CharsOf(attribute_->name);
}

QString XmlAttribute::Text() const {
  return ContentOf(attribute_);
}

XmlAttribute XmlAttribute::Next() const {
  return XmlAttribute(attribute_->next);
}

std::string_view XmlElement::LocalName() const {
  return CharsOf(node_->name);
}

QString XmlElement::NamespaceUri() const {
  return node_->ns == nullptr ? QString() : TextOfXml(node_->ns->href);
}

QString XmlElement::Text() const {
  return ContentOf(node_);
}

QString XmlElement::OwnXml() const {
  const CHandle<xmlBufferFree> buffer(xmlBufferCreate());
  // Declared without const, yet it changes nothing.
  auto* const node = const_cast<xmlNode*>(node_);  // NOLINT
  if (!buffer || xmlNodeDump(buffer.get(), node->doc, node, 0, 0) < 0) return {};
  return QString::fromUtf8(CharsOf(xmlBufferContent(buffer.get())), xmlBufferLength(buffer.get()));
}

QStringList XmlElement::DeclaredNamespaces() const {
  QStringList namespaces;
  for (const xmlNs* declared = node_->nsDef; declared != nullptr; declared = declared->next) {
    namespaces.append(TextOfXml(declared->href));
  }
  return namespaces;
}

XmlElement XmlElement::FirstChild() const {
  return XmlElement(ElementFrom(node_->children));
}

XmlElement XmlElement::Next() const {
  return XmlElement(ElementFrom(node_->next));
}

XmlAttribute XmlElement::FirstAttribute() const {
  return XmlAttribute(node_->properties);
}

void XmlDocument::Deleter::operator()(_xmlDoc* tree) const {
  xmlFreeDoc(tree);
}

std::optional<XmlDocument> XmlDocument::Parse(QStringView text) {
  // The parser takes a NUL behind the root element for the end of the text.
  if (text.contains(u'\0')) return std::nullopt;
  const QStringView encoding = DeclaredEncoding(text);
  if (!encoding.isEmpty() && !IsKnownEncoding(encoding)) return std::nullopt;

  const QuietXmlErrors quiet;
  const CHandle<xmlFreeParserCtxt> parser(xmlNewParserCtxt());
  if (!parser) return std::nullopt;
  parser->sax->serror = IgnoreXmlError;
  parser->sax->internalSubset = RefuseDocumentType;

  const QByteArray bytes = text.toUtf8();
  xmlDoc* const tree =
      xmlCtxtReadMemory(parser.get(), bytes.constData(), static_cast<int>(bytes.size()), nullptr,
                        "UTF-8", ParseOptions);
  if (tree == nullptr) return std::nullopt;
  XmlDocument document(tree);
  const xmlNode* const root = xmlDocGetRootElement(tree);
  if (root == nullptr || NestsDeeperThan(MaxDepth, root)) return std::nullopt;
  if (parser->nsWellFormed == 0 && HasUndeclaredPrefix(root)) return std::nullopt;
  return document;
}

XmlElement XmlDocument::Root() const {
  return XmlElement(xmlDocGetRootElement(tree_.get()));
}

}  // namespace kartocheck
