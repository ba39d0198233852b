#!/bin/bash
# The game under a screen reader's ears: a virtual X display with a window
# manager and a private D-Bus session (with its accessibility bus), in which
# atspi_listen.py walks from the main menu to a puzzle and back, listening to
# focus changes as Orca does. The game runs from a program folder of its own
# (the executable, its sounds and the starter word lists), so the player's
# lists are neither needed nor touched. Exit code 77 (skipped) without Xvfb.
#
#   usage: screenreader_test.sh <lexicove executable> <source folder>
set -u
usage="usage: screenreader_test.sh <lexicove executable> <source folder>"
program=${1:?$usage}
source_dir=${2:?$usage}
here=$(cd "$(dirname "$0")" && pwd)

if ! command -v Xvfb >/dev/null; then
    echo "SKIPPED: Xvfb is not installed (apt-get install xvfb)"
    exit 77
fi
for tool in openbox xdotool dbus-run-session; do
    command -v "$tool" >/dev/null || { echo "FAILED: $tool is not installed"; exit 1; }
done
if ! /usr/bin/python3 -c 'import pyatspi' 2>/dev/null; then
    echo "FAILED: /usr/bin/python3 has no pyatspi (apt-get install python3-pyatspi at-spi2-core)"
    exit 1
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/lexicove-screenreader.XXXXXX")
xvfb_pid= wm_pid=
trap 'kill $wm_pid $xvfb_pid 2>/dev/null; wait; rm -rf "$work"' EXIT

mkdir -p "$work/program" "$work/runtime" "$work/home"
chmod 700 "$work/runtime"
cp "$program" "$work/program/lexicove" || exit 1
sounds=$(dirname "$program")
ls "$sounds"/*.wav >/dev/null 2>&1 || sounds=$source_dir/assets/sounds
cp "$sounds"/*.wav "$work/program/" 2>/dev/null
cp "$source_dir"/assets/wordlists/*.wds "$work/program/" || exit 1

. "$here/../support/xdisplay.sh"
start_xvfb "$work" || exit 1

# Without a window manager the focus does not come back after a dialog.
openbox --sm-disable >/dev/null 2>&1 &
wm_pid=$!
sleep 0.5

# No sound server: the game must play on without one.
export XDG_RUNTIME_DIR=$work/runtime HOME=$work/home
unset PULSE_SERVER DBUS_SESSION_BUS_ADDRESS
dbus-run-session -- /usr/bin/python3 "$here/atspi_listen.py" "$work/program/lexicove" \
    2> >(grep -v -e 'Failed to set fd limit' -e 'Activating service' \
             -e 'Successfully activated' -e 'SpiRegistry daemon' >&2)
