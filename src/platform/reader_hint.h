#pragma once

#include <QString>

namespace ctapi::host {
enum class ReaderTrouble;
}

namespace kartocheck {

// What keeps the user from a PC/SC reader, in one sentence, and what to do; empty where nothing
// does.
[[nodiscard]] QString ReaderHint(ctapi::host::ReaderTrouble trouble);

}  // namespace kartocheck
