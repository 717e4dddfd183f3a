#include "platform/clipboard_marks.h"

namespace kartocheck {

// Named by KDE's clipboard manager, and respected by others.
std::vector<std::pair<QString, QByteArray>> ClipboardSecretMarks() {
  return {{QStringLiteral("x-kde-passwordManagerHint"), QByteArrayLiteral("secret")}};
}

}  // namespace kartocheck
