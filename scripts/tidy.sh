#!/usr/bin/env bash
# Runs clang-tidy with the checks of .clang-tidy; fails where it finds something.
#   scripts/tidy.sh         every file, which takes an hour
#   scripts/tidy.sh BASE    the lines that have changed since the commit BASE; a changed header is
#                           looked at as a file of its own
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh test
cmake --preset release >/dev/null

log=build/release/tidy.log
jobs=$(nproc)
# Both runners end well where clang-tidy has found something: what they print decides.
if [ $# -eq 0 ]; then
  run-clang-tidy -quiet -p build/release -j "$jobs" "^$PWD/(src|ctapi|tests|bench)/" || true
else
  # Files of another system are in no translation unit here.
  git diff -U0 --no-color --no-ext-diff "$1" -- '*.cpp' '*.h' ':!*windows*' |
    clang-tidy-diff -quiet -p 1 -path build/release -j "$jobs" || true
fi >"$log" 2>&1

grep -vE '^(clang-tidy|/usr/bin/clang-tidy)|warnings? generated\.$|^$' "$log" || true
if grep -qE ': (warning|error): |^Traceback|[Ee]rror while' "$log"; then exit 1; fi
