#!/usr/bin/env bash
# Installs what is missing, builds everything, runs every test: optimised, under the sanitizers, and
# once without the window. Warnings are errors. Build folders stay, so a second run builds nothing.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh test
scripts/format.sh --check

for preset in release sanitize console; do
  echo "== $preset"
  cmake --preset "$preset" -DKARTOCHECK_WERROR=ON >/dev/null
  cmake --build --preset "$preset"
  log=build/$preset/ctest.log
  if ! ctest --preset "$preset" >"$log" 2>&1; then
    grep -vE ' (Passed|Start) ' "$log" | tail -n 300
    exit 1
  fi
  grep -A 4 'tests passed' "$log"
done
