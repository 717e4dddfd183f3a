#include "ui/plain_label.h"

#include <QTextDocument>

#include "ui/text_label.h"

namespace kartocheck {

QLabel* PlainLabel(const QString& name, const QString& text, QWidget* parent) {
  auto* label = new TextLabel(parent);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setText(text);
  return label;
}

QString PlainToolTip(const QString& text) {
  if (!Qt::mightBeRichText(text)) return text;
  return u"<qt>" + text.toHtmlEscaped() + u"</qt>";
}

QString MemberName(QStringView array, int index) {
  return array.toString() + u'_' + QString::number(index);
}

}  // namespace kartocheck
