#!/usr/bin/env bash
# Installs what is missing, builds everything, runs every test: optimised, under the sanitizers, and
# once without the window. Builds the fuzzing programs, and looks through the changed lines with
# clang-tidy. Warnings are errors. Build folders stay, so a second run builds nothing.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh test
scripts/format.sh --check

build() {
  echo "== $1"
  cmake --preset "$1" -DKARTOCHECK_WERROR=ON >/dev/null
  cmake --build --preset "$1"
}

# The commit where this branch left main; on main itself the one before the last.
base_commit() {
  local main base
  for main in origin/main main; do
    base=$(git merge-base HEAD "$main" 2>/dev/null) || continue
    [ "$base" = "$(git rev-parse HEAD)" ] || { echo "$base"; return; }
  done
  git rev-parse --verify --quiet HEAD^
}

for preset in release sanitize console; do
  build "$preset"
  log=build/$preset/ctest.log
  if ! ctest --preset "$preset" >"$log" 2>&1; then
    grep -vE ' (Passed|Start) ' "$log" | tail -n 300
    exit 1
  fi
  grep -A 4 'tests passed' "$log"
done
build fuzz

if base=$(base_commit 2>/dev/null); then
  echo "== clang-tidy since $base"
  scripts/tidy.sh "$base"
fi
