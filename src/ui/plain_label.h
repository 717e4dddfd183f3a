#pragma once

#include <QLabel>

namespace kartocheck {

// A label that shows its text as it is: no markup, a single "&" as a single "&".
[[nodiscard]] QLabel* PlainLabel(const QString& name, const QString& text, QWidget* parent);

// The text of a tool tip that shows this text as it is. Qt reads what looks like markup as markup.
[[nodiscard]] QString PlainToolTip(const QString& text);

// The object name of a member of a control array: "Opti_Comx" and 4 give "Opti_Comx_4".
[[nodiscard]] QString MemberName(QStringView array, int index);

}  // namespace kartocheck
