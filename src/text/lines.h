#pragma once

#include <QString>
#include <QStringView>

#include <initializer_list>

namespace kartocheck {

// The text of a message box: fixed lines joined with CR LF. Blanks at the ends of the lines belong
// to the texts; an empty line gives two line breaks in a row.
[[nodiscard]] QString Lines(std::initializer_list<QStringView> lines);

// The text in one line: a blank for every line break, whichever character or pair makes it.
[[nodiscard]] QString OneLine(QStringView text);

}  // namespace kartocheck
