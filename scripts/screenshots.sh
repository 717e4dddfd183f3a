#!/usr/bin/env bash
# Takes pictures of every window and message box, in light and dark colours, on a large screen and on
# the screens that windows are made for, at scales from 100 to 200 %, into build/screenshots/. Needs
# no display.
#   scripts/screenshots.sh                        all of them
#   scripts/screenshots.sh 1366x768 150           one screen at one scale
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh test
cmake --preset release >/dev/null
cmake --build --preset release --target kartocheck_screenshots

screens=(
  3840x2160:100 3840x2160:200
  1366x768:100 1366x768:125 1366x768:150
  1920x1080:125 1920x1080:150 1920x1080:200
  1280x720:100
)
if [ $# -eq 2 ]; then screens=("$1:$2"); fi

program=build/release/tests/gui/kartocheck_screenshots
config=build/screenshots/screen.json
mkdir -p build/screenshots
for screen in "${screens[@]}"; do
  IFS=x: read -r width height percent <<<"$screen"
  # A task bar takes 48 logical pixels.
  cat >"$config" <<END
{"screens": [{"name": "screen", "x": 0, "y": 0, "width": $width,
  "height": $((height - 48 * percent / 100)), "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]}
END
  export QT_QPA_PLATFORM="offscreen:configfile=$config"
  export QT_SCALE_FACTOR="$((percent / 100)).$((percent % 100))"
  "$program" "build/screenshots/light_${width}x${height}_$percent"
  "$program" "build/screenshots/dark_${width}x${height}_$percent" --dark
done
echo "Pictures: build/screenshots/"
