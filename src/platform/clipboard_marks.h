#pragma once

#include <QByteArray>
#include <QString>

#include <utility>
#include <vector>

namespace kartocheck {

// Further formats of a text in the clipboard, by their MIME type, that ask the programs which keep
// a history of the clipboard, or copy it to other machines, to leave this text out.
[[nodiscard]] std::vector<std::pair<QString, QByteArray>> ClipboardSecretMarks();

}  // namespace kartocheck
