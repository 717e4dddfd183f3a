#!/usr/bin/env bash
# Formats every C++ file; with --check it only tells which ones are not formatted, and fails.
set -euo pipefail
cd "$(dirname "$0")/.."
command -v clang-format >/dev/null || scripts/install.sh test

# Versions differ in details, so one judges everywhere: the newest that Debian 12 and 13 both have.
clang_format=clang-format-19

if command -v git >/dev/null && git rev-parse --git-dir >/dev/null 2>&1; then
  mapfile -d '' files < <(git ls-files -z --cached --others --exclude-standard '*.cpp' '*.h')
else
  mapfile -d '' files < <(find src ctapi tests bench -name '*.cpp' -print0 -o -name '*.h' -print0)
fi
if [ "${1:-}" = --check ]; then
  $clang_format --dry-run --Werror "${files[@]}"
else
  $clang_format -i "${files[@]}"
fi
