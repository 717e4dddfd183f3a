#!/usr/bin/env bash
# Installs what is missing, builds everything, runs every test: optimised, under the sanitizers, and
# once without the window. Warnings are errors. Build folders stay, so a second run builds nothing.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh test
scripts/format.sh --check

for preset in release sanitize console; do
  echo "== $preset"
  cmake --preset "$preset" -DBUILD_TESTING=ON -DKARTOCHECK_WERROR=ON >/dev/null
  cmake --build --preset "$preset"
  ctest --preset "$preset" --quiet --output-on-failure || ctest_failed=1
  [ -z "${ctest_failed:-}" ] || { echo "tests failed: $preset" >&2; exit 1; }
done
