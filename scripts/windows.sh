#!/usr/bin/env bash
# Makes the program for Windows on a Debian machine: the installer and a zip that runs without being
# installed, both in build/windows-x86/packages. With --test it is tested under Wine as well.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=windows-x86
build=build/$preset
is_tested=false
case "${1:-}" in
  '') ;;
  --test) is_tested=true ;;
  *) echo "usage: $0 [--test]" >&2; exit 2 ;;
esac

scripts/install.sh windows
if $is_tested; then scripts/install.sh windows-test; fi
scripts/windows_libraries.sh

echo "== $preset"
cmake --preset $preset -DKARTOCHECK_WERROR=ON -DBUILD_TESTING=$($is_tested && echo ON || echo OFF) >/dev/null
cmake --build --preset $preset

version=$(sed -nE 's/^CMAKE_PROJECT_VERSION:STATIC=//p' $build/CMakeCache.txt)
packages=$PWD/$build/packages
stage=$packages/KartoCheck
rm -rf "$packages"
mkdir -p "$packages"
cmake --install $build --strip --prefix "$stage" >/dev/null

echo "== installer and zip"
# What is installed is removed, file by file, and nothing that somebody else has put beside it.
{
  (cd "$stage" && find . -type f -printf '%P\n') | sort | sed 's#/#\\#g; s#.*#Delete "$INSTDIR\\&"#'
  (cd "$stage" && find . -mindepth 1 -type d -printf '%P\n') | sort --reverse |
    sed 's#/#\\#g; s#.*#RMDir "$INSTDIR\\&"#'
} >"$packages/remove.nsh"
makensis -V2 -INPUTCHARSET UTF8 -DVERSION="$version.0" -DSTAGE="$stage" -DLISTS="$packages" \
  -DICON="$PWD/$build/src/main/windows/kartocheck.ico" -DOUTPUT="$packages/KartoCheck-$version-Installation.exe" \
  packaging/windows/kartocheck.nsi
(cd "$packages" && zip --quiet --recurse-paths -9 "KartoCheck-$version.zip" KartoCheck)
rm "$packages/remove.nsh"
ls -l --human-readable "$packages"/*.exe "$packages"/*.zip

if $is_tested; then
  echo "== tests under Wine"
  log=$build/ctest.log
  if ! ctest --preset $preset >"$log" 2>&1; then
    grep -vE ' (Passed|Start) ' "$log" | tail -n 300
    exit 1
  fi
  grep -A 4 'tests passed' "$log"
  scripts/windows_installed.sh
fi
