#include "egk/readers/sample_documents.h"

#include <stdexcept>

#include "support/gzip_data.h"

namespace kartocheck::test {

namespace {

constexpr QStringView Declaration =
    u"<?xml version=\"1.0\" encoding=\"ISO-8859-15\" standalone=\"yes\"?>";
constexpr QStringView RootAttributes =
    u" CDM_VERSION=\"5.2.0\" xmlns=\"http://ws.gematik.de/fa/vsdm/vsd/v5.2\">";

QString Document(QStringView root, QStringView content) {
  return Declaration % u'<' % root % RootAttributes % content % u"</" % root % u'>';
}

}  // namespace

QString PdDocument() {
  return Document(u"UC_PersoenlicheVersichertendatenXML",
                  u"<Versicherter><Versicherten_ID>Q110000028</Versicherten_ID><Person>"
                  u"<Geburtsdatum>19710203</Geburtsdatum><Vorname>Öllegunde</Vorname>"
                  u"<Nachname>Musterfräulein-Prüfstein</Nachname><Geschlecht>W</Geschlecht>"
                  u"<StrassenAdresse><Postleitzahl>99999</Postleitzahl><Ort>Übungsstadt</Ort>"
                  u"<Land><Wohnsitzlaendercode>D</Wohnsitzlaendercode></Land>"
                  u"<Strasse>Am Testfeld</Strasse><Hausnummer>12</Hausnummer></StrassenAdresse>"
                  u"</Person></Versicherter>");
}

QString VdDocument() {
  return Document(
      u"UC_AllgemeineVersicherungsdatenXML",
      u"<Versicherter><Versicherungsschutz><Beginn>20240101</Beginn><Ende>20291231</Ende>"
      u"<Kostentraeger><Kostentraegerkennung>109999999</Kostentraegerkennung>"
      u"<Kostentraegerlaendercode>D</Kostentraegerlaendercode>"
      u"<Name>Erfundene Kasse für Prüfzwecke</Name></Kostentraeger></Versicherungsschutz>"
      u"<Zusatzinfos><ZusatzinfosGKV><Versichertenart>1</Versichertenart>"
      u"<Zusatzinfos_Abrechnung_GKV><WOP>98</WOP></Zusatzinfos_Abrechnung_GKV>"
      u"</ZusatzinfosGKV></Zusatzinfos></Versicherter>");
}

QString GvdDocument() {
  return Document(u"UC_GeschuetzteVersichertendatenXML",
                  u"<Zuzahlungsstatus><Status>1</Status><Gueltig_bis>20241231</Gueltig_bis>"
                  u"</Zuzahlungsstatus><BesonderePersonengruppe>09</BesonderePersonengruppe>"
                  u"<Selektivvertraege><Aerztlich>0</Aerztlich>"
                  u"<Zahnaerztlich>0</Zahnaerztlich></Selektivvertraege>");
}

QByteArray Compressed(const QString& text) {
  return Gzip(text.toLatin1());
}

QByteArray Compressed(const QString& text, qsizetype size) {
  const QByteArray block = Compressed(text);
  if (block.size() > size) throw std::length_error("the block is longer than that");
  return block.leftJustified(size, '\0');
}

QByteArray Damaged(const QString& text) {
  constexpr qsizetype ChecksumFromEnd = 8;  // CRC-32, then the length (RFC 1952)
  QByteArray block = Compressed(text);
  char& byte = block[block.size() - ChecksumFromEnd];
  byte = static_cast<char>(~byte);
  return block;
}

QByteArray Number(int number) {
  return QByteArray().append(static_cast<char>(number >> 8)).append(static_cast<char>(number));
}

QByteArray FileWithLength(const QByteArray& block) {
  return Number(static_cast<int>(block.size())) + block;
}

QByteArray Container(const QByteArray& vd, const QByteArray& gvd) {
  constexpr int First = 8;
  const int afterVd = First + static_cast<int>(vd.size());
  const int afterGvd = afterVd + static_cast<int>(gvd.size());
  const QByteArray gvdOffsets =
      gvd.isEmpty() ? Number(0xFFFF) + Number(0xFFFF) : Number(afterVd) + Number(afterGvd - 1);
  return Number(First) + Number(afterVd - 1) + gvdOffsets + vd + gvd;
}

QByteArray StatusVd() {
  return QByteArray::fromHex(StatusVdText.toLatin1());
}

QByteArray Gdo() {
  return QByteArray::fromHex("5A0A" + SerialNumber.toLatin1());
}

}  // namespace kartocheck::test
