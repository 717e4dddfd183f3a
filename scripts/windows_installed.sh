#!/usr/bin/env bash
# Installs the program under Wine as its users do, silently, uses it, and removes it again. To be
# called after scripts/windows.sh has made the installer.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=build/windows-x86/packages
home=$(mktemp --directory --tmpdir kartocheck-installed-XXXXXX)
export KARTOCHECK_WINE_HOME=$home KARTOCHECK_WINE_DISPLAY=:96
trap 'scripts/wine.sh --stop' EXIT
fail() { echo "$0: $*" >&2; exit 1; }
wine() { scripts/wine.sh "$@"; }
installer=$(realpath "$packages"/*-Installation.exe)
# The folder is what follows /D= to the end of the line, without quotes, which only a command
# interpreter hands through.
install() { wine cmd /s /c "start /wait Z:${installer//\//\\} /S /CurrentUser /D=$folder" </dev/null; }

# Folders with blanks and umlauts, as users have them.
folder='C:\Prüf Programme\KartoCheck'
inside="$home/prefix/drive_c/Prüf Programme/KartoCheck"
everything() {
  (cd "$home/prefix" && find . -not -path '*/Temp/*' -not -name '*.reg' | sort)
}

wine cmd /c exit </dev/null
everything >"$home/before"
install
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
sys.exit(0 if report["complete"] and any(port.get("data") for port in report["ports"].values()) else 1)
END
status=0
wine "$inside/kartocheck.exe" --nonsense </dev/null >/dev/null 2>&1 || status=$?
[ "$status" = 3 ] || fail "a wrong call ends with $status"

echo "== refuses while it runs"
wine "$inside/kartocheck-window.exe" --simulate </dev/null >/dev/null 2>&1 & window=$!
is_shown() { DISPLAY=$KARTOCHECK_WINE_DISPLAY xwininfo -root -tree | grep -qi "kartocheck-window"; }
for _ in $(seq 100); do is_shown && break; sleep 0.2; done
is_shown || fail "no window"
status=0
install || status=$?
[ "$status" != 0 ] || fail "installs over a program that runs"
pkill -f "^$inside/kartocheck-window.exe"
wait $window || true

echo "== removes itself"
wine "$inside/Deinstallieren.exe" /S /CurrentUser </dev/null
# It goes on as a copy of itself, which its caller does not wait for.
for _ in $(seq 100); do [ -e "$inside" ] || break; sleep 0.2; done
# The folder above was named by us.
rmdir "$home/prefix/drive_c/Prüf Programme"
everything >"$home/after"
diff "$home/before" "$home/after" || fail "something is left"
# The registry is written when the server ends.
scripts/wine.sh --stop
if grep -q -a 'KartoCheck' "$home"/prefix/*.reg; then fail "something is left in the registry"; fi
rm -rf "$home"
echo "installed, used and removed"
