#pragma once

#include <QString>

namespace kartocheck {

// Copies a text of a card. Programs that keep a history of the clipboard are asked to leave it out.
void CopySecret(const QString& text);

}  // namespace kartocheck
