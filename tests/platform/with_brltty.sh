#!/bin/bash
# Runs a command where a braille display player would meet the game: a
# virtual X display of its own with a window manager, and brltty of its own
# on its virtual driver, whose display the command plays (see
# tests/support/brltty.sh). Exit code 77 (skipped) only where brltty is not
# installed; without Xvfb or openbox the run fails, since the braille tests
# must run wherever brltty can be had.
#
#   usage: with_brltty.sh <command> [arguments...]
set -u
[ $# -ge 1 ] || { echo "usage: with_brltty.sh <command> [arguments...]"; exit 2; }

if ! command -v brltty >/dev/null; then
    echo "SKIPPED: brltty is not installed (apt-get install brltty)"
    exit 77
fi
for tool in Xvfb openbox; do
    command -v "$tool" >/dev/null ||
        { echo "FAILED: $tool is not installed (apt-get install xvfb openbox)"; exit 1; }
done

work=$(mktemp -d "${TMPDIR:-/tmp}/lexicove-braille.XXXXXX")
xvfb_pid= wm_pid=
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../support/xdisplay.sh"
. "$here/../support/brltty.sh"
trap 'stop_brltty; kill $wm_pid $xvfb_pid 2>/dev/null; wait; rm -rf "$work"' EXIT
mkdir -p "$work/runtime" "$work/home"
chmod 700 "$work/runtime"

start_xvfb "$work" || exit 1
# Without a window manager the focus does not come back after a dialog.
openbox --sm-disable >/dev/null 2>&1 &
wm_pid=$!
start_brltty "$work" || exit 1

export XDG_RUNTIME_DIR=$work/runtime HOME=$work/home QT_QPA_PLATFORM=xcb
unset PULSE_SERVER
"$@"
status=$?
[ $status -eq 0 ] || { echo "brltty's log:"; cat "$work/brltty.log"; }
exit $status
