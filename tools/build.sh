#!/usr/bin/env bash
# Sets up a Debian or Ubuntu machine for Lexicove, builds it, and then either
# starts the game (run), runs every test headless (test), or makes the Debian
# package lexicove_<version>_<arch>.deb in build-package (package).
set -euo pipefail

mode=${1:-run}
case "$mode" in run|test|package) ;; *) echo "usage: $0 run|test|package" >&2; exit 2 ;; esac

here=$(cd "$(dirname "$0")/.." && pwd)
build=${LEXICOVE_BUILD_DIR:-$here/build}

packages=(cmake make g++ qt6-base-dev qt6-multimedia-dev libcups2-dev libbenchmark-dev
          fonts-liberation)
if [ "$mode" = test ]; then
    packages+=(xvfb openbox xdotool dbus at-spi2-core python3 python3-pyatspi)
    # A private sound server whose output the sound soak test listens to.
    packages+=(pulseaudio pulseaudio-utils)
    # A private print server with a PDF queue and a braille embosser queue.
    packages+=(cups-daemon cups-client cups-filters liblouis-bin liblouis-data poppler-utils)
    # The installed game and its package, checked.
    packages+=(desktop-file-utils appstream inotify-tools lintian)
fi
if [ "$mode" != run ]; then
    # The package's dependencies are computed from the executable.
    packages+=(dpkg-dev file)
fi

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    sudo=""
    [ "$(id -u)" -ne 0 ] && sudo=sudo
    echo "Installing: ${missing[*]}"
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get update -qq
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

if [ "$mode" = package ]; then
    # The game alone, built with Debian's hardening flags.
    build=${LEXICOVE_PACKAGE_BUILD_DIR:-$here/build-package}
    eval "$(DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --export=sh)"
    export CXXFLAGS="$CPPFLAGS $CXXFLAGS"
    cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DLEXICOVE_BUILD_TESTS=OFF -DLEXICOVE_BUILD_BENCH=OFF
    cmake --build "$build" -j"$(nproc)"
    rm -f "$build"/lexicove_*.deb
    (cd "$build" && cpack -G DEB)
    deb=$(ls "$build"/lexicove_*.deb)
    echo "Made $deb"
    echo "Install it with: sudo apt install $deb"
    exit 0
fi

cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$build" -j"$(nproc)"

if [ "$mode" = run ]; then
    exec "$build/bin/lexicove"
fi

runtime=$(mktemp -d)
chmod 700 "$runtime"
trap 'rm -rf "$runtime"' EXIT
export XDG_RUNTIME_DIR="$runtime"
export QT_QPA_PLATFORM=offscreen
cd "$build"
ctest --output-on-failure -j"$(nproc)"
