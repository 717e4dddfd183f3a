#!/usr/bin/env bash
# Processor time and resident memory from the start to the shown window, and their ratio to an empty
# Qt Widgets window: one with nothing in it, and a main window with a menu and a status bar. The least
# of 15 runs each. Without a display the figures are of Qt's offscreen platform; with xvfb-run there
# are those of X11 too.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1:-}" != --measure ]; then
  scripts/install.sh test
  cmake --preset release >/dev/null
  cmake --build build/release --target start_program start_empty_window start_empty_main_window
  QT_QPA_PLATFORM=offscreen "$0" --measure "offscreen"
  if command -v xvfb-run >/dev/null; then QT_QPA_PLATFORM=xcb xvfb-run -a "$0" --measure "X11"; fi
  exit
fi

export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-/tmp} XDG_CONFIG_HOME=${TMPDIR:-/tmp}/kartocheck_bench
for program in empty_window empty_main_window program; do
  for _ in $(seq 15); do build/release/bench/start/start_$program 2>/dev/null; done
done | awk -v title="$2" '
  !($1 in ms) || $2 < ms[$1] { ms[$1] = $2 }
  !($1 in kb) || $3 < kb[$1] { kb[$1] = $3 }
  END {
    printf "%s\n  %-34s %9s %9s %18s %18s\n", title, "window", "CPU ms", "RSS kB", "to empty", "to empty main"
    split("empty empty_main Form_FirstUser Form_MKT_Test", names)
    for (i = 1; i <= 4; ++i) {
      n = names[i]
      printf "  %-34s %9.1f %9d %8.2f / %7.2f %8.2f / %7.2f\n", n, ms[n], kb[n],
        ms[n] / ms["empty"], kb[n] / kb["empty"], ms[n] / ms["empty_main"], kb[n] / kb["empty_main"]
    }
  }'
