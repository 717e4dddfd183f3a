#pragma once

#include <QByteArray>
#include <QString>

namespace kartocheck::test {

// The VSD of an invented person as XML text, in the data model 5.2.
[[nodiscard]] QString PdDocument();
[[nodiscard]] QString VdDocument();
[[nodiscard]] QString GvdDocument();

// One gzip member with the text's bytes, a byte a character.
[[nodiscard]] QByteArray Compressed(const QString& text);

// The compressed text, filled up with zero bytes to the size.
[[nodiscard]] QByteArray Compressed(const QString& text, qsizetype size);

// The compressed text with a byte of its checksum changed: not to be decompressed.
[[nodiscard]] QByteArray Damaged(const QString& text);

// Big-endian, two bytes.
[[nodiscard]] QByteArray Number(int number);

// A file that begins with the length of its block.
[[nodiscard]] QByteArray FileWithLength(const QByteArray& block);

// EF.VD: eight bytes of offsets, the VD and, unless it is empty, the GVD.
[[nodiscard]] QByteArray Container(const QByteArray& vd, const QByteArray& gvd);

// EF.StatusVD of the card, 25 bytes.
[[nodiscard]] QByteArray StatusVd();
inline constexpr QStringView StatusVdText = u"30323032353034303731303130353800500200000030000004";

// EF.GDO and the serial number in it.
[[nodiscard]] QByteArray Gdo();
inline constexpr QStringView SerialNumber = u"80276001010000000017";

}  // namespace kartocheck::test
