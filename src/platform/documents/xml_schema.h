#pragma once

#include <memory>
#include <optional>

#include "platform/documents/xml_document.h"

struct _xmlSchema;  // NOLINT(bugprone-reserved-identifier): libxml2's own name

namespace kartocheck {

// A compiled XSD schema.
class XmlSchema {
 public:
  // Nothing where the document is no valid schema. A schema stands alone: one that imports,
  // includes or redefines another is refused.
  [[nodiscard]] static std::optional<XmlSchema> Compile(XmlDocument document);

  // Whether the document is valid under this schema. Schema locations that it names are ignored.
  [[nodiscard]] bool Accepts(const XmlDocument& document) const;

 private:
  struct Deleter {
    void operator()(_xmlSchema* schema) const;
  };
  XmlSchema(XmlDocument source, _xmlSchema* compiled)
      : source_(std::move(source)), compiled_(compiled) {}

  XmlDocument source_;  // the compiled form points into it
  std::unique_ptr<_xmlSchema, Deleter> compiled_;
};

}  // namespace kartocheck
