#include "ui/secret_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "platform/clipboard_marks.h"

namespace kartocheck {

void CopySecret(const QString& text) {
  auto* data = new QMimeData;  // the clipboard takes it over
  data->setText(text);
  for (const auto& [format, value] : ClipboardSecretMarks()) data->setData(format, value);
  QGuiApplication::clipboard()->setMimeData(data);
}

}  // namespace kartocheck
