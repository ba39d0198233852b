#!/bin/bash
# The game under a screen reader's eyes: starts a virtual X display with a
# window manager and a private D-Bus session with the accessibility bus, then
# lets atspi_listen.py walk from the main menu to a puzzle and back while it
# listens to focus changes as Orca does.
#
#   usage: screenreader_test.sh <lexicove executable> <source folder>
#
# The game runs from a program folder of its own (the executable, its sounds
# and the starter word lists), so the player's lists are neither needed nor
# touched. Exit code 77 (skipped) where Xvfb is not installed.
set -u

program=${1:?usage: screenreader_test.sh <lexicove executable> <source folder>}
source_dir=${2:?usage: screenreader_test.sh <lexicove executable> <source folder>}
here=$(cd "$(dirname "$0")" && pwd)

if ! command -v Xvfb >/dev/null 2>&1; then
    echo "SKIPPED: Xvfb is not installed (apt-get install xvfb)"
    exit 77
fi
for tool in openbox xdotool dbus-run-session; do
    if ! command -v "$tool" >/dev/null 2>&1; then
        echo "FAILED: $tool is not installed (apt-get install openbox xdotool dbus)"
        exit 1
    fi
done
if ! /usr/bin/python3 -c 'import pyatspi' 2>/dev/null; then
    echo "FAILED: Debian's python3 has no pyatspi (apt-get install python3-pyatspi at-spi2-core)"
    exit 1
fi
if [ ! -x "$program" ]; then
    echo "FAILED: no game at $program"
    exit 1
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/lexicove-screenreader.XXXXXX")
xvfb_pid=
wm_pid=
cleanup() {
    [ -n "$wm_pid" ] && kill "$wm_pid" 2>/dev/null
    [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT

# The program folder.
mkdir -p "$work/program" "$work/runtime" "$work/home"
chmod 700 "$work/runtime"
cp "$program" "$work/program/lexicove"
sounds=$(dirname "$program")
ls "$sounds"/*.wav >/dev/null 2>&1 || sounds=$source_dir/assets/sounds
cp "$sounds"/*.wav "$work/program/" 2>/dev/null
cp "$source_dir"/assets/wordlists/*.wds "$work/program/"

# A display of our own: Xvfb picks a free number and writes it to fd 3.
Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$work/display" \
    >"$work/xvfb.log" 2>&1 &
xvfb_pid=$!
for _ in $(seq 100); do
    [ -s "$work/display" ] && break
    sleep 0.1
done
if [ ! -s "$work/display" ]; then
    echo "FAILED: Xvfb did not start:"
    cat "$work/xvfb.log"
    exit 1
fi
export DISPLAY=:$(head -n1 "$work/display")

# Without a window manager the focus does not come back after a dialog.
openbox --sm-disable >"$work/openbox.log" 2>&1 &
wm_pid=$!
sleep 0.5

# No sound server: the game must play on without one.
export XDG_RUNTIME_DIR=$work/runtime HOME=$work/home
unset PULSE_SERVER DBUS_SESSION_BUS_ADDRESS
dbus-run-session -- /usr/bin/python3 "$here/atspi_listen.py" "$work/program/lexicove" \
    2> >(grep -v -e 'Failed to set fd limit' -e 'Activating service' \
             -e 'Successfully activated' -e 'SpiRegistry daemon' >&2)
result=$?
exit $result
