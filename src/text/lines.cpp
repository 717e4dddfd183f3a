#include "text/lines.h"

namespace kartocheck {

QString Lines(std::initializer_list<QStringView> lines) {
  QString text;
  bool first = true;
  for (const QStringView line : lines) {
    if (!first) text += u"\r\n";
    text += line;
    first = false;
  }
  return text;
}

QString OneLine(QStringView text) {
  constexpr QStringView Breaks = u"\n\v\f\r\u0085\u2028\u2029";
  QString line;
  line.reserve(text.size());
  QChar before;
  for (const QChar character : text) {
    const bool isPair = before == u'\r' && character == u'\n';
    if (!isPair) line += Breaks.contains(character) ? QChar(u' ') : character;
    before = character;
  }
  return line;
}

}  // namespace kartocheck
