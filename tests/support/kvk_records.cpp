#include "support/kvk_records.h"

#include <stdexcept>

namespace kartocheck::test {

namespace {

constexpr int ChecksumTag = 0x8E;
constexpr int SupplementChecksumTag = 0x93;

char XorOf(const QByteArray& bytes) {
  char sum = 0;
  for (const char byte : bytes) sum = static_cast<char>(sum ^ byte);
  return sum;
}

QByteArray HeaderOf(Form form, qsizetype contentLength) {
  const auto low = static_cast<char>(contentLength & 0xFF);
  const auto high = static_cast<char>(contentLength >> 8);
  switch (form) {
    case Form::Form60:
      return QByteArray("\x60") + low;
    case Form::Form6081:
      return QByteArray("\x60\x81") + low;
    case Form::Form6082:
      return QByteArray("\x60\x82") + high + low;
  }
  throw std::invalid_argument("no such form");
}

QByteArray Field(const char* text, int width) {
  const QByteArray bytes(text);
  if (bytes.size() > width) throw std::invalid_argument("field too long");
  return bytes.leftJustified(width, ' ');
}

}  // namespace

const QMap<QString, QString>& SampleRecords() {
  static const QString B = QStringLiteral(
      "6081A18015424B4B20426569737069656C204E6F7264776573748107373635343332318F"
      "053137393939820C393837363534333231303132830435303030900139840344722E850A"
      "4A7C72672D50657465728603766F6E87075D6265726D617E880833313132313936398915"
      "48696E7465722064656E20487C66656E20313220618A01448B0530313036378C0E447265"
      "7364656E2D4C7C627461758D04313132388E0190");
  static const QMap<QString, QString> Records{
      {QStringLiteral("A"),
       QStringLiteral("605A8007414F4B20537D648107313233343536378F053030303132820931323334353637"
                      "383983043130303090013185045B6E6E65870547727C7E6C880830313032313935308B05"
                      "31323334358C044B7C6C6E8D04313233308E01ED")},
      {QStringLiteral("B"), B},
      {QStringLiteral("C"), B + QStringLiteral("9108303530333230323492033130399301A0")},
      // B as form 6082, its checksum as this form counts it.
      {QStringLiteral("B6082"),
       QStringLiteral("608200A1") + B.mid(6).chopped(2) + QStringLiteral("92")},
      // B with one bit of the insurer's name changed.
      {QStringLiteral("B-broken"), QString(B).replace(10, 2, QStringLiteral("43"))},
  };
  return Records;
}

QString SampleRecord(QStringView name) {
  const auto record = SampleRecords().find(name.toString());
  if (record == SampleRecords().end()) throw std::invalid_argument("no such record");
  return *record;
}

QString HexOf(const QByteArray& bytes) {
  return QString::fromLatin1(bytes.toHex().toUpper());
}

QByteArray ObjectBytes(const std::vector<DataObject>& objects) {
  QByteArray bytes;
  for (const auto& [tag, value] : objects) {
    bytes += static_cast<char>(tag);
    bytes += static_cast<char>(value.size());
    bytes += value;
  }
  return bytes;
}

QString TemplateRecord(Form form, const std::vector<DataObject>& objects) {
  QByteArray content = ObjectBytes(objects);
  content += static_cast<char>(ChecksumTag);
  if (form != Form::Form6082) content += '\x01';
  char sum = XorOf(HeaderOf(form, content.size() + (form == Form::Form6082 ? 2 : 1)) + content);
  if (form == Form::Form6082) content += '\x01';
  content += sum;
  return TemplateAround(form, content);
}

QString TemplateAround(Form form, const QByteArray& content) {
  return HexOf(HeaderOf(form, content.size()) + content);
}

QString Supplement(const std::vector<DataObject>& objects) {
  QByteArray bytes = ObjectBytes(objects);
  bytes += static_cast<char>(SupplementChecksumTag);
  bytes += '\x01';
  bytes += XorOf(bytes);
  return HexOf(bytes);
}

QString FullTemplateRecord() {
  return TemplateRecord(Form::Form6081, {
                                            {0x80, "Musterkasse Beispielhausen "},
                                            {0x81, "7654321"},
                                            {0x82, "987654321012"},
                                            {0x8F, "17999"},
                                            {0x83, "1000"},
                                            {0x90, "9  "},
                                            {0x84, "Prof. Dr."},
                                            {0x85, "Maximiliane-Th|odora"},
                                            {0x86, "Freifrau von"},
                                            {0x87, "Musterfrau-B{umlein"},
                                            {0x88, "31121969"},
                                            {0x89, "Unter den Kastanien 123"},
                                            {0x8A, "D"},
                                            {0x8B, "01067"},
                                            {0x8C, "Bad M}sterlingen am S."},
                                            {0x8D, "1228"},
                                        });
}

QByteArray FixedRecordFields() {
  return Field("BKK Muster", 28) + Field("7654321", 7) + Field("987654321012", 12) +
         Field("17999", 5) + Field("1000", 4) + Field("9", 3) + Field("Dr.", 15) +
         Field("J|rg-Peter", 28) + Field("von", 15) + Field("]berma~", 28) + Field("31121969", 8) +
         Field("Hinter den H|fen 12 a", 28) + Field("D", 3) + Field("01067", 7) +
         Field("Dresden-L|btau", 23) + Field("1228", 4) + Field("\x5A", 1);
}

}  // namespace kartocheck::test
