#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <memory>
#include <optional>
#include <string_view>

// libxml2's own names, so that its headers stay out of this one.
// NOLINTBEGIN(bugprone-reserved-identifier)
struct _xmlAttr;
struct _xmlDoc;
struct _xmlNode;
// NOLINTEND(bugprone-reserved-identifier)

namespace kartocheck {

// An attribute of an element. Valid while its document lives; false where there is none.
class XmlAttribute {
 public:
  explicit XmlAttribute(const _xmlAttr* attribute) : attribute_(attribute) {}
  explicit operator bool() const { return attribute_ != nullptr; }

  [[nodiscard]] std::string_view LocalName() const;  // UTF-8, without prefix
  [[nodiscard]] QString Text() const;
  [[nodiscard]] XmlAttribute Next() const;

 private:
  const _xmlAttr* attribute_;
};

// An element of a document. Valid while its document lives; false where there is none.
class XmlElement {
 public:
  explicit XmlElement(const _xmlNode* node) : node_(node) {}
  explicit operator bool() const { return node_ != nullptr; }

  [[nodiscard]] std::string_view LocalName() const;  // UTF-8, without prefix
  [[nodiscard]] QString NamespaceUri() const;        // empty where it is in none
  // The texts of the element and of everything below it.
  [[nodiscard]] QString Text() const;
  // The element as XML, without an XML declaration.
  [[nodiscard]] QString OwnXml() const;

  // The namespaces that this element declares, in document order, with or without a prefix.
  [[nodiscard]] QStringList DeclaredNamespaces() const;

  [[nodiscard]] XmlElement FirstChild() const;
  [[nodiscard]] XmlElement Next() const;  // sibling
  [[nodiscard]] XmlAttribute FirstAttribute() const;

 private:
  const _xmlNode* node_;
};

// A well-formed XML document.
class XmlDocument {
 public:
  // Levels of elements; the parser itself gives up soon behind, or at some thousands in later
  // versions.
  static constexpr int MaxDepth = 256;

  // The text is Unicode already: the encoding that its XML declaration names is not applied.
  // Nothing where the text is not well-formed, or uses a prefix without a namespace, or nests
  // deeper, or names an encoding other than UTF-8, UTF-16, US-ASCII, ISO-8859-1 to -16 and
  // windows-1250 to -1258, or has a document type (so there are no entities to expand). Nothing
  // else is ever loaded: no file, nothing from the network.
  [[nodiscard]] static std::optional<XmlDocument> Parse(QStringView text);

  [[nodiscard]] XmlElement Root() const;

 private:
  friend class XmlSchema;

  struct Deleter {
    void operator()(_xmlDoc* tree) const;
  };
  explicit XmlDocument(_xmlDoc* tree) : tree_(tree) {}

  std::unique_ptr<_xmlDoc, Deleter> tree_;
};

}  // namespace kartocheck
