#pragma once

// The 8-bit code page of everything that cards and terminals send: ISO-8859-15 (Latin-9).

#include <QByteArrayView>
#include <QString>

namespace kartocheck {

// The character that the byte stands for in ISO-8859-15.
[[nodiscard]] QChar CharacterOf(quint8 byte);

// One character a byte.
[[nodiscard]] QString TextOf(QByteArrayView bytes);

}  // namespace kartocheck
