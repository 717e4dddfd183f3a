#pragma once

#include <stdexcept>

#include "egk/vsd_decoder.h"
#include "egk/vsd_documents.h"
#include "support/fake_display.h"
#include "support/fake_event_loop.h"
#include "support/gzip_data.h"
#include "support/printing.h"

namespace kartocheck::test {

// The records of a slot, the settings and the front end around the decoder.
class VsdFixture {
 public:
  [[nodiscard]] VsdResult Decompress(VsdKind kind, QByteArrayView compressed) {
    const VsdTarget target{.egk = egk,
                           .insured = insured,
                           .validation = validation,
                           .display = display,
                           .eventLoop = eventLoop};
    switch (kind) {
      case VsdKind::Pd:
        return DecompressPd(compressed, target);
      case VsdKind::Vd:
        return DecompressVd(compressed, target);
      case VsdKind::Gvd:
        return DecompressGvd(compressed, target);
    }
    throw std::invalid_argument("no kind of document");
  }

  [[nodiscard]] VsdResult DecompressText(VsdKind kind, QStringView text) {
    return Decompress(kind, Gzip(text.toLatin1()));
  }

  void ValidateWithOwnSchemas() {
    validation.isOn = true;
    LoadSchemas(validation, {OwnSchemaDirectory()});
  }

  // The rows and elements that hold something, as the expected files write them.
  [[nodiscard]] QStringList Mapped(VsdKind kind) const {
    QStringList lines;
    const FieldTable& fields = egk.documents[kind].fields;
    for (std::size_t row = 0; row < fields.size(); ++row) {
      if (fields[row].IsEmpty()) continue;
      lines.append(QStringLiteral("row %1 | ").arg(row) + fields[row].name + QStringLiteral(" | ") +
                   fields[row].value);
    }
    for (int element = 0; element < ElementCount; ++element) {
      const QString& text = insured[static_cast<Element>(element)];
      if (!text.isEmpty()) lines.append(QStringLiteral("insured %1 | ").arg(element) + text);
    }
    return lines;
  }

  [[nodiscard]] VsdField Row(VsdKind kind, std::size_t row) const {
    return egk.documents[kind].fields.at(row);
  }

  EgkData egk;
  InsuredData insured;
  ValidationSettings validation;
  FakeDisplay display;
  FakeEventLoop eventLoop;
};

}  // namespace kartocheck::test
