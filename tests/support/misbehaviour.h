#pragma once

namespace kartocheck::test {

// ASAN_OPTIONS of a process whose crashes are meant: they are left to the system, as they are where
// no sanitizer is linked.
inline constexpr const char* SanitizersLookAway =
    "detect_leaks=0:abort_on_error=1:handle_segv=0:handle_sigbus=0:handle_sigfpe=0:handle_sigill=0:"
    "handle_abort=0:use_sigaltstack=0";

}  // namespace kartocheck::test
