#include "gui/flow_logs/flow_log.h"

#include <QByteArray>

#include <stdexcept>

namespace kartocheck::test {

namespace {

QString Escaped(QChar character) {
  switch (character.unicode()) {
    case u'\r':
      return QStringLiteral("\\r");
    case u'\n':
      return QStringLiteral("\\n");
    case u'\t':
      return QStringLiteral("\\t");
    case u'\\':
      return QStringLiteral("\\\\");
    default:
      break;
  }
  if (character.isPrint()) return character;
  return QStringLiteral("\\u%1").arg(int{character.unicode()}, 4, 16, QChar(u'0'));
}

}  // namespace

FlowLog::FlowLog(const QString& file) : file_(file) {
  if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
    throw std::runtime_error("cannot write " + file.toStdString());
  }
}

void FlowLog::Line(const QString& text) {
  const QByteArray bytes = text.toUtf8() + '\n';
  if (file_.write(bytes) != bytes.size()) {
    throw std::runtime_error("cannot write " + file_.fileName().toStdString());
  }
}

void FlowLog::Lines(QStringView mark, const QString& text) {
  for (const QString& line : text.split(u'\n')) Line(mark + u' ' + Quoted(line));
}

QString Quoted(QStringView text) {
  QString shown(u'"');
  for (const QChar character : text) shown += Escaped(character);
  return shown + u'"';
}

QString Hexadecimal(std::span<const std::uint8_t> bytes) {
  const QByteArray view(reinterpret_cast<const char*>(bytes.data()),
                        static_cast<qsizetype>(bytes.size()));
  return QString::fromLatin1(view.toHex(' ').toUpper());
}

}  // namespace kartocheck::test
