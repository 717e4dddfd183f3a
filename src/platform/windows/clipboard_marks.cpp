#include "platform/clipboard_marks.h"

namespace kartocheck {

namespace {

// Qt hands a registered clipboard format through under this type.
QString Format(const QString& name) {
  return u"application/x-qt-windows-mime;value=\"" + name + u'"';
}

const QByteArray No(4, '\0');  // a DWORD

}  // namespace

// Microsoft, "Clipboard Formats", cloud clipboard and clipboard history.
std::vector<std::pair<QString, QByteArray>> ClipboardSecretMarks() {
  return {{Format(QStringLiteral("ExcludeClipboardContentFromMonitorProcessing")), No},
          {Format(QStringLiteral("CanIncludeInClipboardHistory")), No},
          {Format(QStringLiteral("CanUploadToCloudClipboard")), No}};
}

}  // namespace kartocheck
