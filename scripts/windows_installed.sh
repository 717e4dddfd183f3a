#!/usr/bin/env bash
# Installs the program under Wine as its users do, silently, uses it, and removes it again. To be
# called after scripts/windows.sh has made the installer.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=build/windows-x86/packages
home=$(mktemp --directory --tmpdir kartocheck-installed-XXXXXX)
export KARTOCHECK_WINE_HOME=$home
fail() { echo "$0: $*" >&2; exit 1; }
wine() { scripts/wine.sh "$@"; }
installer=$(ls "$packages"/*-Installation.exe)

# Folders with blanks and umlauts, as users have them.
folder='C:\Prüf Programme\KartoCheck'
inside="$home/prefix/drive_c/Prüf Programme/KartoCheck"
everything() {
  (cd "$home/prefix" && find . -not -path '*/Temp/*' -not -name '*.reg' | sort)
}

wine cmd /c exit </dev/null
everything >"$home/before"
wine "$installer" /S /CurrentUser "/D=$folder" </dev/null
[ -f "$inside/kartocheck-window.exe" ] || fail "nothing was installed"

echo "== console"
status=0
wine "$inside/kartocheck.exe" --console --simulate </dev/null >"$home/report.txt" 2>"$home/messages.txt" || status=$?
[ "$status" = 0 ] || { cat "$home/messages.txt" >&2; fail "console: exit status $status"; }
iconv -f UTF-8 -t UTF-8 "$home/report.txt" >/dev/null || fail "the report is not UTF-8"
grep -q 'Versicherte' "$home/report.txt" || fail "no insured data in the report"
grep -q 'ü' "$home/report.txt" || fail "no umlaut in the report"
wine "$inside/kartocheck.exe" --console --simulate --json --quiet </dev/null >"$home/report.json"
python3 - "$home/report.json" <<'END' || fail "the JSON report is none, or has no data"
import json, sys
report = json.load(open(sys.argv[1], encoding="utf-8"))
sys.exit(0 if report["complete"] and any("insured" in str(port) for port in report["ports"]) else 1)
END
status=0
wine "$inside/kartocheck.exe" --nonsense </dev/null >/dev/null 2>&1 || status=$?
[ "$status" = 3 ] || fail "a wrong call ends with $status"

echo "== refuses while it runs"
Xvfb :97 -screen 0 1366x768x24 -nolisten tcp >/dev/null 2>&1 & display=$!
trap 'kill $display 2>/dev/null || true' EXIT
DISPLAY=:97 wine "$inside/kartocheck-window.exe" --simulate </dev/null >/dev/null 2>&1 & window=$!
for _ in $(seq 100); do
  DISPLAY=:97 xwininfo -root -tree 2>/dev/null | grep -q KartoCheck && break
  sleep 0.2
done
status=0
wine "$installer" /S /CurrentUser "/D=$folder" </dev/null || status=$?
[ "$status" != 0 ] || fail "installs over a program that runs"
wine taskkill /f /im kartocheck-window.exe </dev/null >/dev/null 2>&1
wait $window || true

echo "== removes itself"
wine "$inside/Deinstallieren.exe" /S /CurrentUser "_?=$folder" </dev/null
rm -f "$inside/Deinstallieren.exe"; rmdir "$inside" 2>/dev/null || true
rmdir "$home/prefix/drive_c/Prüf Programme" 2>/dev/null || true
everything >"$home/after"
diff "$home/before" "$home/after" || fail "something is left"
if grep -q -a 'KartoCheck' "$home"/prefix/*.reg; then fail "something is left in the registry"; fi
wine wineserver --kill 2>/dev/null || true
rm -rf "$home"
echo "installed, used and removed"
