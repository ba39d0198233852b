#!/usr/bin/env bash
# Sets up a Debian or Ubuntu machine for Lexicove, builds it, and then either
# starts the game (run) or runs every test headless (test).
set -euo pipefail

mode=${1:-run}
case "$mode" in run|test) ;; *) echo "usage: $0 run|test" >&2; exit 2 ;; esac

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
