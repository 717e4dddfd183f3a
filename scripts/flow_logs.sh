#!/usr/bin/env bash
# Records what the program does on every bundled scenario, one text file a scenario and flow, into an
# empty folder. Two recordings of the same program are identical, so a change that is meant to keep
# what the program does is checked by recording before and after it:
#   scripts/flow_logs.sh /tmp/before ... scripts/flow_logs.sh /tmp/after; diff -r /tmp/before /tmp/after
# Needs no display. FLOW_LOGS_JOBS: how many scenarios are recorded at once.
set -euo pipefail
if [ $# -ne 1 ]; then echo "usage: $0 OUTPUT_FOLDER" >&2; exit 2; fi
mkdir -p "$1"
folder=$(cd "$1" && pwd)
if [ -n "$(ls -A "$folder")" ]; then echo "$1 is not empty" >&2; exit 2; fi
cd "$(dirname "$0")/.."

scripts/install.sh test
cmake --preset release >/dev/null
cmake --build --preset release --target kartocheck_flow_logs kartocheck

export QT_QPA_PLATFORM=offscreen folder
XDG_RUNTIME_DIR=$(mktemp --directory)
export XDG_RUNTIME_DIR
trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT

# One call of the program as it is, with its waits: NAME INPUT ARGUMENT ...
record_call() {
  local file=$folder/$1.txt input=$2
  shift 2
  local status=0
  printf '%b' "$input" | build/release/kartocheck "$@" >"$file.out" 2>"$file.err" || status=$?
  { echo "# kartocheck $*"; cat "$file.out"; echo "# standard error"; cat "$file.err"
    echo "# exit status $status"; } >"$file"
  rm "$file.out" "$file.err"
}

record_program() {
  local scenario=$1
  local name=$scenario.program simulated=(--console --verbose --simulate "scenarios/$scenario.json")
  record_call "$name-text" '' "${simulated[@]}"
  record_call "$name-json" '' "${simulated[@]}" --json
  record_call "$name-erase" '' "${simulated[@]}" --erase-records
  record_call "$name-validate" '' "${simulated[@]}" --json --erase-records --validate
  record_call "$name-port" '' "${simulated[@]}" --port 1
  record_call "$name-diagnosis" 'j\nn\nn\n' "${simulated[@]}" --diagnose 1
}

record_usage() {
  record_call program-help '' --help
  record_call program-version '' --version
  record_call program-unknown-option '' --console --sprache
  record_call program-missing-scenario '' --console --simulate fehlt
  record_call program-port-0 '' --console --simulate --port 0
  record_call program-diagnosis-and-json '' --console --simulate --diagnose 1 --json
}
export -f record_call record_program record_usage

jobs=${FLOW_LOGS_JOBS:-2}
# The calls of the program spend their time waiting, so they run beside the others.
{ record_usage
  printf '%s\n' praxis leer stoerungen anschluesse egk-gespeichert kvk-gespeichert |
    xargs -P "$jobs" -I {} bash -euc 'record_program {}'; } &
program_calls=$!
printf '%s\n' scenarios/*.json |
  xargs -P "$jobs" -I {} build/release/tests/gui/kartocheck_flow_logs "$folder" {} \
    2> >(grep -v 'plugin does not support propagateSizeHints' >&2)
wait "$program_calls"
echo "$(find "$folder" -type f | wc -l) files, $(cat "$folder"/* | wc -l) lines: $folder"
