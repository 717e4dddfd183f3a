#pragma once

#include <QByteArray>
#include <QRegularExpression>
#include <QString>

#include <string>

namespace kartocheck::test {

// The script with each {from+count} replaced by the hexadecimal text of these bytes of the content,
// and {name:from+count} by those of the content of that name.
[[nodiscard]] inline std::string Filled(const std::string& script, const QByteArray& content,
                                        const QString& name = {}) {
  const QString prefix = name.isEmpty() ? QString() : name + u':';
  const QRegularExpression place(QStringLiteral("\\{%1(\\d+)\\+(\\d+)\\}").arg(prefix));
  const QString text = QString::fromStdString(script);
  QString filled;
  qsizetype end = 0;
  for (auto places = place.globalMatch(text); places.hasNext();) {
    const QRegularExpressionMatch match = places.next();
    const QByteArray bytes = content.mid(match.captured(1).toInt(), match.captured(2).toInt());
    filled += text.mid(end, match.capturedStart() - end);
    filled += QString::fromLatin1(bytes.toHex().toUpper());
    end = match.capturedEnd();
  }
  filled += text.mid(end);
  return filled.toStdString();
}

}  // namespace kartocheck::test
