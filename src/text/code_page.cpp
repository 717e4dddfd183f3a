#include "text/code_page.h"

namespace kartocheck {

QChar CharacterOf(quint8 byte) {
  // ISO-8859-15 is ISO-8859-1, whose codes are Unicode's, but for these eight characters.
  switch (byte) {
    case 0xA4:
      return u'\u20AC';  // euro sign
    case 0xA6:
      return u'\u0160';  // S with caron
    case 0xA8:
      return u'\u0161';  // s with caron
    case 0xB4:
      return u'\u017D';  // Z with caron
    case 0xB8:
      return u'\u017E';  // z with caron
    case 0xBC:
      return u'\u0152';  // ligature OE
    case 0xBD:
      return u'\u0153';  // ligature oe
    case 0xBE:
      return u'\u0178';  // Y with diaeresis
    default:
      return QChar(char16_t{byte});
  }
}

QString TextOf(QByteArrayView bytes) {
  QString text(bytes.size(), Qt::Uninitialized);
  QChar* out = text.data();
  for (const char byte : bytes) *out++ = CharacterOf(static_cast<quint8>(byte));
  return text;
}

}  // namespace kartocheck
