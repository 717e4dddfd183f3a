#include "egk/vsd_decoder.h"

#include <optional>

#include "egk/prepared_schema.h"
#include "egk/vsd_fields.h"
#include "platform/documents/gzip.h"
#include "platform/documents/xml_document.h"
#include "text/code_page.h"
#include "text/lines.h"

namespace kartocheck {

namespace {

constexpr GunzipLimits Limits{.pieceSize = 2048, .cap = 32768};

constexpr QStringView NotValidated = u"Es wurde keine Validierung der XML Daten durchgeführt!";

QString CouldNotValidate(const VsdKindTexts& texts, QStringView reason) {
  return Lines(
      {QString(texts.couldNotOpening % u" konnte nicht durchgeführt werden!"), u"", reason});
}

QString Validated(const VsdKindTexts& texts, const QString& version, QStringView outcome) {
  return Lines({u"Die lokale Validierung der XML Daten ",
                QString(texts.schemaName % u'(' % version % u')'), outcome});
}

void MapFields(VsdKind kind, const XmlElement& root, const VsdTarget& target) {
  FieldTable& fields = target.egk.documents[kind].fields;
  switch (kind) {
    case VsdKind::Pd:
      return MapPdFields(root, fields, target.insured);
    case VsdKind::Vd:
      return MapVdFields(root, fields, target.insured);
    case VsdKind::Gvd:
      return MapGvdFields(root, fields, target.insured);
  }
}

// Data whose first or second byte is that of gzip data were not decompressed.
bool LooksCompressed(const QByteArray& bytes) {
  return bytes.startsWith('\x1F') || (bytes.size() > 1 && bytes.at(1) == '\x8B');
}

// The text with everything up to its first "?>" replaced by a declaration without encoding.
QString WithPlainDeclaration(const QString& text) {
  const qsizetype end = text.indexOf(u"?>");
  return end < 0 ? text : u"<?xml version=\"1.0\"?>" % QStringView(text).sliced(end + 2);
}

void MapUnvalidated(VsdKind kind, const VsdTarget& target) {
  const QString& text = target.egk.documents[kind].xmlText;
  std::optional<XmlDocument> document = XmlDocument::Parse(text);
  if (!document) document = XmlDocument::Parse(WithPlainDeclaration(text));
  if (document) MapFields(kind, document->Root(), target);
}

VsdResult ValidateAndMap(VsdKind kind, const VsdTarget& target) {
  const VsdKindTexts& texts = VsdTexts[kind];
  VsdDocument& kept = target.egk.documents[kind];
  target.display.ShowStatusText(texts.validationStatus.toString());

  const std::optional<XmlDocument> document = XmlDocument::Parse(kept.xmlText);
  if (!document) return VsdResult::XmlError;
  const XmlElement root = document->Root();
  kept.xmlText = root.OwnXml();

  const PreparedSchema& prepared = target.validation.schemas[kind].Prepared();
  const XmlSchema* const schema = prepared.For(root.NamespaceUri());
  if (schema == nullptr) {
    kept.validationText = CouldNotValidate(
        texts, prepared.HasRoot()
                   ? u"Der URI-Verweis für den Namespace dieses Schemas ist nicht zutreffend!"
                   : u"Kein lokales XSD-Schema verfügbar! ");
    return VsdResult::Decompressed;
  }

  const QString version = prepared.Version().isEmpty() ? DataVersion(root) : prepared.Version();
  if (!schema->Accepts(*document)) {
    kept.validationText = Validated(texts, version, u"war nicht erfolgreich!");
    return VsdResult::Decompressed;
  }
  MapFields(kind, root, target);
  kept.notValidated = false;
  kept.validationText = Validated(texts, version, u"war erfolgreich!");
  return VsdResult::Decompressed;
}

VsdResult Decompress(VsdKind kind, QByteArrayView compressed, const VsdTarget& target) {
  target.display.ShowStatusText(VsdTexts[kind].decompressionStatus.toString());
  if (compressed.isEmpty()) return VsdResult::XmlError;

  const Gunzipped output = Gunzip(compressed, Limits);
  target.eventLoop.Yield();
  if (output.outcome != GunzipOutcome::Complete || LooksCompressed(output.bytes)) {
    return VsdResult::NotDecompressed;
  }

  VsdDocument& kept = target.egk.documents[kind];
  kept.xmlText = TextOf(output.bytes);
  kept.validationText = NotValidated.toString();
  kept.notValidated = true;

  if (target.validation.isOn) return ValidateAndMap(kind, target);
  MapUnvalidated(kind, target);
  return VsdResult::Decompressed;
}

}  // namespace

VsdResult DecompressVd(QByteArrayView compressed, const VsdTarget& target) {
  return Decompress(VsdKind::Vd, compressed, target);
}

VsdResult DecompressPd(QByteArrayView compressed, const VsdTarget& target) {
  return Decompress(VsdKind::Pd, compressed, target);
}

VsdResult DecompressGvd(QByteArrayView compressed, const VsdTarget& target) {
  return Decompress(VsdKind::Gvd, compressed, target);
}

}  // namespace kartocheck
