#!/usr/bin/env bash
# Installs what is missing, builds, and starts the simulated practice: the window where there is a
# display, the console report where there is none. Further arguments go to the program.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh run
# Tests and benchmarks need packages of their own. Where they are built already, they stay.
if [ ! -f build/release/build.ninja ]; then
  cmake --preset release -DBUILD_TESTING=OFF -DKARTOCHECK_BENCH=OFF >/dev/null
fi
cmake --build --preset release --target program

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec build/release/kartocheck --simulate "$@"
fi
echo "No display found: console report of the simulated practice."
exec build/release/kartocheck --console --simulate "$@"
