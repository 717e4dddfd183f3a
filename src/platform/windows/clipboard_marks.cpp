#include "platform/clipboard_marks.h"

namespace kartocheck {

namespace {

const QByteArray No(4, '\0');  // a DWORD

}  // namespace

// Microsoft, "Clipboard Formats", cloud clipboard and clipboard history. Qt registers a type that
// it does not know as the clipboard format of that name.
std::vector<std::pair<QString, QByteArray>> ClipboardSecretMarks() {
  return {{QStringLiteral("ExcludeClipboardContentFromMonitorProcessing"), No},
          {QStringLiteral("CanIncludeInClipboardHistory"), No},
          {QStringLiteral("CanUploadToCloudClipboard"), No}};
}

}  // namespace kartocheck
