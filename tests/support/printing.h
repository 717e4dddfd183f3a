#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

#include "protocol/status_word.h"

// GoogleTest prints Qt's texts through these.
QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(QStringView text, std::ostream* out) {
  *out << '"' << text.toString().toStdString() << '"';
}
inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
  *out << bytes.toHex(' ').toStdString();
}
QT_END_NAMESPACE

namespace ctapi {
// Four digits, as the standards write a status word.
inline void PrintTo(StatusWord statusWord, std::ostream* out) {
  *out << QByteArray::number(statusWord.Value(), 16).rightJustified(4, '0').toUpper().toStdString();
}
}  // namespace ctapi
