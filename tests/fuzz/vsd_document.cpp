// The text of a document: parsed, mapped as each of the three kinds, validated, written again.

#include <QByteArrayView>

#include "egk/prepared_schema.h"
#include "egk/vsd_fields.h"
#include "egk/vsd_schema.h"
#include "fuzz/fuzz_input.h"
#include "text/code_page.h"

namespace kartocheck {
namespace {

struct Mapped {
  FieldTable fields;
  InsuredData insured;
};

PerVsdKind<Mapped> MapAll(const XmlElement& root) {
  PerVsdKind<Mapped> mapped;
  Mapped& pd = mapped[VsdKind::Pd];
  Mapped& vd = mapped[VsdKind::Vd];
  Mapped& gvd = mapped[VsdKind::Gvd];
  MapPdFields(root, pd.fields, pd.insured);
  MapVdFields(root, vd.fields, vd.insured);
  MapGvdFields(root, gvd.fields, gvd.insured);
  return mapped;
}

void Run(QByteArrayView bytes) {
  static const ValidationSettings schemas = [] {
    ValidationSettings loaded;
    LoadSchemas(loaded, {QStringLiteral(VSD_SCHEMAS)});
    return loaded;
  }();

  const std::optional<XmlDocument> document = XmlDocument::Parse(TextOf(bytes));
  if (!document) return;
  const XmlElement root = document->Root();
  const PerVsdKind<Mapped> mapped = MapAll(root);

  using fuzz::Require;
  for (const VsdKind kind : {VsdKind::Pd, VsdKind::Vd, VsdKind::Gvd}) {
    const FieldTable& fields = mapped[kind].fields;
    for (int row = FieldRowCount[kind]; row < FieldTableRows; ++row) {
      Require(fields.at(static_cast<std::size_t>(row)).IsEmpty(), "no row behind the last");
    }
    const XmlSchema* const schema = schemas.schemas[kind].Prepared().For(root.NamespaceUri());
    if (schema != nullptr) (void)schema->Accepts(*document);
  }
  Require(mapped[VsdKind::Gvd].insured.IsEmpty(), "protected data fill no element");
  (void)DataVersion(root);

  const std::optional<XmlDocument> again = XmlDocument::Parse(root.OwnXml());
  Require(again.has_value(), "the root's own XML is a document");
  const PerVsdKind<Mapped> mappedAgain = MapAll(again->Root());
  for (const VsdKind kind : {VsdKind::Pd, VsdKind::Vd, VsdKind::Gvd}) {
    Require(mapped[kind].fields == mappedAgain[kind].fields, "which maps onto the same fields");
  }
}

}  // namespace
}  // namespace kartocheck

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kartocheck::Run(QByteArrayView(data, static_cast<qsizetype>(size)));
  return 0;
}
