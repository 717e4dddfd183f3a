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

}  // namespace kartocheck
