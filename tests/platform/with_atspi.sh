#!/bin/bash
# Runs a command where a screen reader would meet the game: a virtual X
# display of its own with a window manager, and a private D-Bus session whose
# accessibility bus is up. Qt programs started by the command report to that
# bus (xcb, accessibility on). Nothing of the machine's own display, session
# or sound is used. Exit code 77 (skipped) without Xvfb.
#
#   usage: with_atspi.sh <command> [arguments...]
set -u
[ $# -ge 1 ] || { echo "usage: with_atspi.sh <command> [arguments...]"; exit 2; }

if ! command -v Xvfb >/dev/null; then
    echo "SKIPPED: Xvfb is not installed (apt-get install xvfb)"
    exit 77
fi
for tool in openbox dbus-run-session dbus-send; do
    command -v "$tool" >/dev/null || { echo "FAILED: $tool is not installed"; exit 1; }
done

work=$(mktemp -d "${TMPDIR:-/tmp}/lexicove-atspi.XXXXXX")
xvfb_pid= wm_pid=
trap 'kill $wm_pid $xvfb_pid 2>/dev/null; wait; rm -rf "$work"' EXIT
mkdir -p "$work/runtime" "$work/home"
chmod 700 "$work/runtime"

here=$(cd "$(dirname "$0")" && pwd)
. "$here/../support/xdisplay.sh"
start_xvfb "$work" || exit 1

# Without a window manager the focus does not come back after a dialog.
openbox --sm-disable >/dev/null 2>&1 &
wm_pid=$!
sleep 0.5

# No sound server: the game must play on without one.
export XDG_RUNTIME_DIR=$work/runtime HOME=$work/home
export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
unset PULSE_SERVER DBUS_SESSION_BUS_ADDRESS
# The accessibility bus starts when first asked for; Qt joins it only if it
# is already up when the program starts.
dbus-run-session -- /bin/sh -c \
    'dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress >/dev/null && exec "$@"' \
    with_atspi "$@" \
    2> >(grep -v -e 'Failed to set fd limit' -e 'Activating service' \
             -e 'Successfully activated' -e 'SpiRegistry daemon' >&2)
