#include "text/bytes.h"

namespace kartocheck::bytes {

QByteArrayView Mid(QByteArrayView all, qsizetype index, qsizetype length) {
  if (index < 0 || index >= all.size() || length <= 0) return {};
  return all.sliced(index, qMin(length, all.size() - index));
}

quint8 ByteAt(QByteArrayView all, qsizetype index) {
  return index >= 0 && index < all.size() ? static_cast<quint8>(all[index]) : quint8{0};
}

quint32 NumberAt(QByteArrayView all, qsizetype index, int count) {
  quint32 number = 0;
  for (int i = 0; i < count; ++i) number = number << 8 | ByteAt(all, index + i);
  return number;
}

}  // namespace kartocheck::bytes
