#!/usr/bin/env bash
# Runs every test and tells which lines of the program and its libraries they reach: the totals here,
# each file and line in build/coverage/report/.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh test
cmake --preset coverage >/dev/null
cmake --build --preset coverage

# What an earlier run has counted is not this one's.
find build/coverage -name '*.gcda' -delete
log=build/coverage/ctest.log
if ! ctest --preset coverage >"$log" 2>&1; then
  grep -vE ' (Passed|Start) ' "$log" | tail -n 300
  exit 1
fi

mkdir -p build/coverage/report
gcovr --root . --filter src/ --filter ctapi/ --exclude-throw-branches -j 2 \
  --html-details build/coverage/report/index.html --txt build/coverage/report/files.txt \
  --print-summary build/coverage
echo "Report: build/coverage/report/index.html"
