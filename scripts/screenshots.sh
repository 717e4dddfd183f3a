#!/usr/bin/env bash
# Takes pictures of every window and message box, in light and dark colours, at 100 % and 200 %,
# into build/screenshots/. Needs no display.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh test
cmake --preset release >/dev/null
cmake --build --preset release --target kartocheck_screenshots

export QT_QPA_PLATFORM=offscreen:configfile=tests/gui/large_screen.json
program=build/release/tests/gui/kartocheck_screenshots
for scale in 1 2; do
  QT_SCALE_FACTOR=$scale "$program" "build/screenshots/light_${scale}00"
  QT_SCALE_FACTOR=$scale "$program" "build/screenshots/dark_${scale}00" --dark
done
echo "Pictures: build/screenshots/"
