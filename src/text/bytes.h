#pragma once

// Operations on bytes as files of a card hold them. Indexes are 0-based and count bytes. Whatever
// lies past the end or before the start is harmless: a piece of it is empty, a missing byte counts
// as 0. The same for hexadecimal text: hex_text.h.

#include <QByteArrayView>

namespace kartocheck::bytes {

// The bytes from `index` on, at most `length` of them. A view of the same bytes.
[[nodiscard]] QByteArrayView Mid(QByteArrayView all, qsizetype index, qsizetype length);

[[nodiscard]] quint8 ByteAt(QByteArrayView all, qsizetype index);

// The big-endian number of `count` (1 to 4) bytes that starts at `index`.
[[nodiscard]] quint32 NumberAt(QByteArrayView all, qsizetype index, int count);

}  // namespace kartocheck::bytes
