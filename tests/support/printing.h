#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

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
