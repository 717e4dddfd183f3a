#!/usr/bin/env bash
# Installs the Debian packages that are missing. Asks for root only where something is.
#   scripts/install.sh run    what building and running the program needs
#   scripts/install.sh test   the same, and what the tests and checks need
#   scripts/install.sh windows        what building the programs and the installer for Windows needs
#   scripts/install.sh windows-test   the same, and what testing them needs
set -euo pipefail

run_packages=(
  cmake ninja-build g++ ccache
  qt6-base-dev qt6-serialport-dev qt6-translations-l10n libgl-dev
  librsvg2-bin
  libxml2-dev zlib1g-dev nlohmann-json3-dev libpcsclite-dev pkg-config
)
test_packages=(
  libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-dev clang-format-19 clang-tidy gcovr
  libxml2-utils fonts-dejavu-core fonts-liberation fonts-cantarell
  pcscd vsmartcard-vpcd
  xvfb dbus at-spi2-core gir1.2-atspi-2.0 python3-gi
)
windows_packages=(
  cmake ninja-build ccache dpkg-dev xz-utils
  g++-mingw-w64-i686-posix libz-mingw-w64-dev
  qt6-base-dev qt6-base-dev-tools qt6-translations-l10n libgl-dev
  libxml2-dev nlohmann-json3-dev
  librsvg2-bin icoutils nsis zip
)
windows_test_packages=(googletest debootstrap xvfb x11-utils procps)

packages=("${run_packages[@]}")
case "${1:-run}" in
  run) ;;
  test) packages+=("${test_packages[@]}") ;;
  windows) packages=("${windows_packages[@]}") ;;
  windows-test) packages=("${windows_packages[@]}" "${windows_test_packages[@]}") ;;
  *) echo "usage: $0 [run|test|windows|windows-test]" >&2; exit 2 ;;
esac

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then as_root=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update --quiet
"${as_root[@]}" apt-get install --yes --quiet --no-install-recommends "${missing[@]}"
