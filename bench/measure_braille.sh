#!/bin/bash
# Measures moves in the puzzle with a braille display attached: starts brltty
# of its own on its virtual driver (tests/support/brltty.sh) and runs
# bench_sound_latency as that driver's pretend display, which times each
# move to its letter's sound request and to its row arriving at the display.
#
# usage: bench/measure_braille.sh BUILD_DIR [benchmark options...]
set -u
build=${1:?usage: measure_braille.sh BUILD_DIR [benchmark options...]}
shift
here=$(cd "$(dirname "$0")" && pwd)
command -v brltty >/dev/null || { echo "brltty is not installed (apt-get install brltty)"; exit 1; }
work=$(mktemp -d)
. "$here/../tests/support/brltty.sh"
trap 'stop_brltty; rm -rf "$work"' EXIT
mkdir -p "$work/runtime"
chmod 700 "$work/runtime"
start_brltty "$work" || exit 1
XDG_RUNTIME_DIR=$work/runtime QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen} \
    "$build/bench/bench_sound_latency" "$@"
