#pragma once

// Operations on hexadecimal text: upper-case digits, two a byte, no separators, as commands and
// responses travel. Positions are 1-based and count characters. Whatever lies past the end is
// harmless: a piece past the end is empty, a missing byte counts as 0 and takes no part in an XOR.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

namespace kartocheck::hex {

// The characters from `position` on, at most `length` of them.
[[nodiscard]] QStringView Mid(QStringView text, qsizetype position, qsizetype length);

// All characters from `position` on.
[[nodiscard]] QStringView From(QStringView text, qsizetype position);

// The last `length` characters, or the whole text where it is shorter.
[[nodiscard]] QStringView Right(QStringView text, qsizetype length);

// The byte whose two digits start at `position`; 0 where they are missing or no digits.
[[nodiscard]] quint8 ByteAt(QStringView text, qsizetype position);

// The big-endian number of `bytes` (1 to 4) bytes that starts at `position`; missing bytes count
// as 0.
[[nodiscard]] quint32 NumberAt(QStringView text, qsizetype position, int bytes);

// XOR of the bytes whose digits start at first, first + 2, ... up to and including `last`. An empty
// range yields 0.
[[nodiscard]] quint8 Xor(QStringView text, qsizetype first, qsizetype last);

// The value of a whole text of digits; nothing where it is empty, holds anything but hexadecimal
// digits or does not fit 32 bits.
[[nodiscard]] std::optional<quint32> Value(QStringView digits);

// Upper-case text of the bytes.
[[nodiscard]] QString Encode(QByteArrayView bytes);

// The bytes of a text; nothing where it is of odd length or holds a character that is no digit.
[[nodiscard]] std::optional<QByteArray> Decode(QStringView text);

}  // namespace kartocheck::hex
