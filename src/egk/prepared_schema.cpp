#include "egk/prepared_schema.h"

#include "egk/ascii_case.h"

namespace kartocheck {

namespace {

// The text of the first attribute of that name; nothing where there is none.
std::optional<QString> AttributeText(const XmlElement& element, std::string_view upperCaseName) {
  for (XmlAttribute attribute = element.FirstAttribute(); attribute; attribute = attribute.Next()) {
    if (EqualsUpperCased(attribute.LocalName(), upperCaseName)) return attribute.Text();
  }
  return std::nullopt;
}

// An attribute declaration that is named CDM_VERSION.
bool DeclaresCdmVersion(const XmlElement& element) {
  if (!EqualsUpperCased(element.LocalName(), "ATTRIBUTE")) return false;
  for (XmlAttribute attribute = element.FirstAttribute(); attribute; attribute = attribute.Next()) {
    if (attribute.Text().toUpper() == u"CDM_VERSION") return true;
  }
  return false;
}

// The version declarations met among a schema root's children and their children.
struct VersionWalk {
  std::optional<QString> fixed;    // of the declaration of CDM_VERSION
  std::optional<QString> element;  // text of an element VERSION

  void Look(const XmlElement& candidate) {
    if (!fixed && DeclaresCdmVersion(candidate)) {
      fixed = AttributeText(candidate, "FIXED").value_or(QString());
    }
    if (!element && EqualsUpperCased(candidate.LocalName(), "VERSION")) element = candidate.Text();
  }
};

QString SchemaVersion(const XmlElement& root) {
  VersionWalk walk;
  for (XmlElement child = root.FirstChild(); child; child = child.Next()) {
    walk.Look(child);
    for (XmlElement grandchild = child.FirstChild(); grandchild; grandchild = grandchild.Next()) {
      walk.Look(grandchild);
    }
  }
  if (walk.fixed) return *walk.fixed;
  return walk.element.value_or(QString());
}

// In document order. A declaration of no namespace (xmlns="") declares none.
void AppendDeclaredNamespaces(const XmlElement& element, QStringList& namespaces) {
  for (const QString& declared : element.DeclaredNamespaces()) {
    if (!declared.isEmpty()) namespaces.append(declared);
  }
  for (XmlElement child = element.FirstChild(); child; child = child.Next()) {
    AppendDeclaredNamespaces(child, namespaces);
  }
}

// A schema without target namespace is one for documents in no namespace.
QString TargetNamespace(const XmlElement& root) {
  return AttributeText(root, "TARGETNAMESPACE").value_or(QString());
}

}  // namespace

PreparedSchema::PreparedSchema(QStringView text) {
  std::optional<XmlDocument> document = XmlDocument::Parse(text);
  if (!document) return;
  const XmlElement root = document->Root();
  hasRoot_ = true;
  version_ = SchemaVersion(root);
  namespaces_.append(TargetNamespace(root));
  AppendDeclaredNamespaces(root, namespaces_);
  compiled_ = XmlSchema::Compile(std::move(*document));
}

const XmlSchema* PreparedSchema::For(const QString& namespaceUri) const {
  if (!compiled_ || !namespaces_.contains(namespaceUri)) return nullptr;
  return &*compiled_;
}

QString DataVersion(const XmlElement& root) {
  if (const std::optional<QString> version = AttributeText(root, "CDM_VERSION")) return *version;
  return AttributeText(root, "VERSION").value_or(QString());
}

}  // namespace kartocheck
