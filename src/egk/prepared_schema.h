#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

#include "platform/documents/xml_schema.h"

namespace kartocheck {

// What a schema text was made into.
class PreparedSchema {
 public:
  explicit PreparedSchema(QStringView text);

  // False for an empty text and for one that is no XML document.
  [[nodiscard]] bool HasRoot() const { return hasRoot_; }

  // Whether there is anything to validate against: false where the text is no valid schema, and
  // where it imports, includes or redefines another one.
  [[nodiscard]] bool IsUsable() const { return compiled_.has_value(); }

  // The version that the schema fixes for its documents; empty where it fixes none.
  [[nodiscard]] const QString& Version() const { return version_; }

  // The schema for documents of this namespace: it must be the schema's target namespace or one
  // that the schema declares. Null where it is neither, or the text is no valid schema.
  [[nodiscard]] const XmlSchema* For(const QString& namespaceUri) const;

 private:
  bool hasRoot_ = false;
  QString version_;
  QStringList namespaces_;
  std::optional<XmlSchema> compiled_;
};

// The version that a document states on its root element: CDM_VERSION, else VERSION.
[[nodiscard]] QString DataVersion(const XmlElement& root);

}  // namespace kartocheck
