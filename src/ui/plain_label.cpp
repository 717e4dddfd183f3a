#include "ui/plain_label.h"

namespace kartocheck {

QLabel* PlainLabel(const QString& name, const QString& text, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setText(text);
  return label;
}

QString MemberName(QStringView array, int index) {
  return array.toString() + u'_' + QString::number(index);
}

}  // namespace kartocheck
