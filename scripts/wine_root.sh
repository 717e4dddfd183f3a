#!/usr/bin/env bash
# Makes the root folder in which the programs for Windows are tested: a minimal Debian with Wine for
# programs of 32 bits, kept in ~/.cache/kartocheck (or KARTOCHECK_CACHE), and prints its path. A
# machine's own packages stay as they are: the second architecture is added in the root only.
#   scripts/wine_root.sh [SUITE]     bookworm, or trixie, whose Wine reaches the PC/SC service
set -euo pipefail

suite=${1:-bookworm}
cache=${KARTOCHECK_CACHE:-$HOME/.cache/kartocheck}
key=$(sha256sum "$(dirname "$0")/wine_root.sh" | cut -c 1-16)
root=$cache/wine-$suite-$key

as_root=()
if [ "$(id -u)" -ne 0 ]; then as_root=(sudo); fi

if [ ! -e "$root/complete" ]; then
  {
    mkdir -p "$cache"
    "${as_root[@]}" rm -rf --one-file-system "$root"
    mirror=$(sed -nE 's#^(URIs: *|deb (\[[^]]*\] )?)(https?://[^ ]*/debian/?)( .*)?$#\3#p' \
      /etc/apt/sources.list /etc/apt/sources.list.d/* 2>/dev/null | head -n 1 || true)
    "${as_root[@]}" debootstrap --variant=minbase --include=ca-certificates \
      "$suite" "$root" "${mirror:-http://deb.debian.org/debian}"
    in_root() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 chroot "$root" "$@"; }
    # No service of the root is started.
    printf '#!/bin/sh\nexit 101\n' | "${as_root[@]}" tee "$root/usr/sbin/policy-rc.d" >/dev/null
    "${as_root[@]}" chmod +x "$root/usr/sbin/policy-rc.d"
    in_root dpkg --add-architecture i386
    in_root apt-get update --quiet
    packages=(wine wine32:i386 libwine:i386 fonts-liberation fonts-dejavu-core fonts-cantarell)
    if [ "$suite" = trixie ]; then packages+=(wine64 libpcsclite1 pcscd vsmartcard-vpcd); fi
    in_root apt-get install --yes --quiet --no-install-recommends "${packages[@]}"
    in_root apt-get clean
    "${as_root[@]}" touch "$root/complete"
  } >&2
fi
echo "$root"
