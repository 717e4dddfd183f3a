#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace kartocheck {

// The document with each element on a line of its own, indented by its depth, to be read by people.
// Nothing where the text is no well-formed document, has a document type, or nests deeper than
// XmlDocument reads.
[[nodiscard]] std::optional<QString> IndentedXml(QStringView text);

}  // namespace kartocheck
