#pragma once

#include <optional>

namespace kartocheck {

enum class StandardStream { Input = 0, Output = 1, Error = 2 };

// Whether a person sits at the other end.
[[nodiscard]] bool IsTerminal(StandardStream stream);

// How many characters a line of the terminal holds at the moment; nothing where it does not tell,
// and where the stream is none.
[[nodiscard]] std::optional<int> ColumnsOf(StandardStream stream);

// Makes writing to a closed pipe an error of the write instead of the program's end, and keeps a
// standard stream that the program was started without from becoming something else: reading from
// it, or writing to it, fails. Text in UTF-8 is shown and typed as such at every terminal, and
// otherwise leaves the program byte by byte. To be called before anything is opened.
void PrepareStandardStreams();

// Waits for a moment until a person at standard input has typed a line; false where none has come.
// True at once where standard input is no terminal.
[[nodiscard]] bool WaitForInput();

}  // namespace kartocheck
