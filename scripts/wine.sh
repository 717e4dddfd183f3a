#!/usr/bin/env bash
# Runs a Windows program in the root of scripts/wine_root.sh, with the tree and the temporary folder
# at their usual places: scripts/wine.sh PROGRAM [ARGUMENT ...]. KARTOCHECK_WINE_SUITE names another
# Debian release than bookworm, KARTOCHECK_WINE_HOME the folder that takes the place of the user's.
# Windows are shown on a display of their own, :96, or the one that KARTOCHECK_WINE_DISPLAY names; what
# runs on for the next call is ended by scripts/wine.sh --stop.
set -euo pipefail
tree=$(cd "$(dirname "$0")/.." && pwd)
root=$("$tree/scripts/wine_root.sh" "${KARTOCHECK_WINE_SUITE:-bookworm}")
home=${KARTOCHECK_WINE_HOME:-$tree/build/wine-home}
display=${KARTOCHECK_WINE_DISPLAY:-:96}

as_root=()
if [ "$(id -u)" -ne 0 ]; then as_root=(sudo --preserve-env); fi

bind() { # FOLDER: the same in the root
  mountpoint --quiet "$root$1" && return
  "${as_root[@]}" mkdir -p "$root$1"
  "${as_root[@]}" mount --rbind "$1" "$root$1"
}
enter() {
  "${as_root[@]}" env HOME="$home" WINEPREFIX="$home/prefix" WINEDEBUG="${WINEDEBUG:--all}" \
    WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe=" LC_ALL=C.UTF-8 DISPLAY="$display" \
    chroot "$root" sh -c 'cd "$1" 2>/dev/null; shift; exec "$@"' sh "$PWD" "$@"
}

if [ "${1:-}" = --stop ]; then
  enter wineserver --kill 2>/dev/null || true
  pkill -f "^Xvfb $display " || true
  exit
fi

(
  # One at a time makes the mounts and the prefix.
  flock 9
  for folder in /proc /dev /tmp "$tree"; do bind "$folder"; done
  if [ ! -e "$home/prefix/kartocheck-ready" ]; then
    mkdir -p "$home"
    # No crash dialogue, which would wait for a click; windows without the help of a window manager.
    enter sh -c 'wineboot --update && winecfg -v win10 &&
      wine reg add "HKCU\Software\Wine\WineDbg" /v ShowCrashDialog /t REG_DWORD /d 0 /f &&
      wine reg add "HKCU\Software\Wine\X11 Driver" /v Managed /d N /f && wineserver --wait' \
      </dev/null >"$home/prefix.log" 2>&1
    touch "$home/prefix/kartocheck-ready"
  fi
  # Wine's desktop is made by the first program, and stays where that one found no display.
  if [ ! -e "/tmp/.X11-unix/X${display#:}" ]; then
    setsid Xvfb "$display" -screen 0 1366x768x24 -nolisten tcp </dev/null >/dev/null 2>&1 9>&- &
    for _ in $(seq 50); do [ -e "/tmp/.X11-unix/X${display#:}" ] && break; sleep 0.1; done
  fi
  # The server stays, so that a program starts in a tenth of a second; it fails where one runs
  # already. What is started here, services and the desktop, is given none of our streams, which it
  # would keep open as long as it lives.
  enter sh -c 'if wineserver --persistent; then wine rundll32 user32.dll,GetDesktopWindow; fi' \
    </dev/null >/dev/null 2>&1 9>&-
) 9>"/tmp/kartocheck-wine.lock"

# Wine keeps variables that begin with QT_ from its programs; a command interpreter sets them again.
settings=''
while IFS= read -r variable; do settings+="set $variable&& "; done < <(env | grep '^QT_' || true)
if [ -z "$settings" ]; then enter wine "$@"; exit; fi
program=$(realpath "$1")
shift
enter wine cmd /s /c "${settings}Z:${program//\//\\} $*"
