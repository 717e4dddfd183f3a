#!/usr/bin/env bash
# Builds what the program for Windows is linked with: Qt and libxml2, static, from Debian's sources,
# beside the headers of nlohmann-json. Built once and kept outside the tree, in a folder named after
# the versions and this recipe; build/windows-libraries leads there. KARTOCHECK_CACHE names another
# place than ~/.cache/kartocheck.
set -euo pipefail
cd "$(dirname "$0")/.."

toolchain=$PWD/cmake/windows-x86.cmake
cache=${KARTOCHECK_CACHE:-$HOME/.cache/kartocheck}

version_of() { dpkg-query --show --showformat='${Version}' "$1"; }
# Sources of the versions that the host's own tools (moc, rcc, uic) are of.
qt_version=$(version_of qt6-base-dev)
libxml_version=$(version_of libxml2-dev)
key=$( { cat scripts/windows_libraries.sh "$toolchain"; echo "$qt_version $libxml_version"
         version_of "g++-mingw-w64-i686-posix"; version_of nlohmann-json3-dev; } | sha256sum | cut -c 1-16)
prefix=$cache/windows-x86-$key

link_prefix() {
  mkdir -p build
  ln --symbolic --force --no-dereference "$prefix" build/windows-libraries
}
if [ -e "$prefix/complete" ]; then link_prefix; exit 0; fi

work=$(mktemp --directory --tmpdir kartocheck-windows-XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/apt/lists/partial" "$cache"

# The sources of the suites that this machine installs from, by lists of our own: nothing of the
# system's configuration changes.
{
  for file in /etc/apt/sources.list.d/*.sources; do
    [ -e "$file" ] || continue
    if grep -q '^URIs:.*debian' "$file"; then sed 's/^Types:.*/Types: deb-src/' "$file"; echo; fi
  done
} >"$work/apt/debian.sources"
for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
  [ -e "$file" ] || continue
  sed -nE 's#^deb (\[[^]]*\] )?(https?://[^ ]*debian.*)#deb-src \1\2#p' "$file"
done >"$work/apt/debian.list"
mkdir "$work/apt/parts"
mv "$work"/apt/debian.* "$work/apt/parts/"
apt_options=(-o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$work/apt/parts"
             -o Dir::State::lists="$work/apt/lists" -o Dir::Cache="$work/apt"
             -o APT::Sandbox::User=)

fetch() {
  (cd "$work" && apt-get "${apt_options[@]}" --quiet --download-only source "$1=$2")
  mkdir "$work/$1"
  tar --extract --file "$(ls "$work/$1"_*.orig.tar.*[!c])" --directory "$work/$1" --strip-components 1
}
echo "== sources of qt6-base $qt_version and libxml2 $libxml_version"
apt-get "${apt_options[@]}" --quiet update
# A rebuild of the same sources has a version of its own (+b1).
fetch qt6-base "${qt_version%+b*}"
fetch libxml2 "${libxml_version%+b*}"

off() { for feature in "$@"; do echo "-DFEATURE_$feature=OFF"; done; }
on() { for feature in "$@"; do echo "-DFEATURE_$feature=ON"; done; }

echo "== libxml2"
cmake -S "$work/libxml2" -B "$work/libxml2-build" -G Ninja --toolchain "$toolchain" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/kartocheck-libxml2 -DBUILD_SHARED_LIBS=OFF \
  $(for part in FTP HTTP PYTHON ICONV LZMA ZLIB MODULES LEGACY DOCB HTML TESTS PROGRAMS; do
      echo "-DLIBXML2_WITH_$part=OFF"; done) \
  -DLIBXML2_WITH_ISO8859X=ON -DLIBXML2_WITH_THREADS=ON -DLIBXML2_WITH_SCHEMAS=ON >/dev/null
cmake --build "$work/libxml2-build" >"$work/libxml2.log" || { tail -n 50 "$work/libxml2.log"; exit 1; }
DESTDIR="$work/stage" cmake --install "$work/libxml2-build" >/dev/null

# The prefix is compiled in: a neutral one, which no machine has. Without tabletevent, whose headers
# Debian's mingw-w64 lacks; with direct2d, without which DirectWrite does not link.
echo "== qt6-base (a quarter of an hour on two cores)"
cmake -S "$work/qt6-base" -B "$work/qt6-base-build" -G Ninja --toolchain "$toolchain" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/kartocheck-qt \
  -DQT_QMAKE_TARGET_MKSPEC=win32-g++ -DQT_HOST_PATH=/usr \
  -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake" \
  -DBUILD_SHARED_LIBS=OFF -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF \
  -DQT_BUILD_TOOLS_WHEN_CROSSCOMPILING=OFF -DINPUT_opengl=no \
  $(off pkg_config dbus network sql xml printsupport concurrent androiddeployqt opengl vulkan \
        tabletevent direct2d1_1 jpeg icu glib zstd system_zlib system_png system_freetype \
        system_harfbuzz system_pcre2 system_doubleconversion) \
  $(on static_runtime testlib direct2d) >"$work/qt.log" 2>&1 || { tail -n 50 "$work/qt.log"; exit 1; }
cmake --build "$work/qt6-base-build" >>"$work/qt.log" 2>&1 || { tail -n 50 "$work/qt.log"; exit 1; }
DESTDIR="$work/stage" cmake --install "$work/qt6-base-build" >/dev/null

mv "$work/stage/kartocheck-qt" "$work/stage/qt"
mv "$work/stage/kartocheck-libxml2" "$work/stage/libxml2"
mkdir -p "$work/stage/include"
cp --recursive /usr/include/nlohmann "$work/stage/include/"
mkdir -p "$work/stage/share/cmake"
cp --recursive /usr/share/cmake/nlohmann_json "$work/stage/share/cmake/"
echo "qt6-base $qt_version
libxml2 $libxml_version" >"$work/stage/complete"
rm -rf "$prefix"
mv "$work/stage" "$prefix"
link_prefix
