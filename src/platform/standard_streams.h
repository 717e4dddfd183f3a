#pragma once

namespace kartocheck {

enum class StandardStream { Input = 0, Output = 1, Error = 2 };

// Whether a person sits at the other end.
[[nodiscard]] bool IsTerminal(StandardStream stream);

// Waits for a moment until a person at standard input has typed a line; false where none has come.
// True at once where standard input is no terminal.
[[nodiscard]] bool WaitForInput();

}  // namespace kartocheck
