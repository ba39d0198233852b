#!/bin/bash
# Plays into a puzzle and around it with the real Orca sharing a braille
# display with the game: on a private X display, D-Bus session and brltty
# (tests/support/brltty.sh) with a pretend 12-cell display, Orca at its
# default settings but with speech off (in such a session Orca's speech
# stalls its braille). Prints one timeline, in seconds from the start, of
# the keys pressed (the display's own marked "display"), what the display
# showed (its text and cursor cell) and the lines Orca wrote to it.
#
#   usage: bench/measure_orca_braille.sh BUILD_DIR
#   needs: orca brltty python3-brlapi xvfb openbox xdotool at-spi2-core dbus
set -u
build=$(cd "${1:?usage: measure_orca_braille.sh BUILD_DIR}" && pwd)
for tool in orca brltty Xvfb openbox xdotool dbus-run-session; do
    command -v "$tool" >/dev/null || { echo "$tool is not installed"; exit 1; }
done
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
pids=()
. "$here/../tests/support/brltty.sh"
. "$here/../tests/support/xdisplay.sh"
trap 'stop_brltty; kill ${pids[@]} 2>/dev/null; wait 2>/dev/null; rm -rf "$work"' EXIT
mkdir -p "$work/runtime" "$work/home/.local/share/orca" "$work/program"
chmod 700 "$work/runtime"
cp "$build/bin/lexicove" "$build"/bin/*.wav "$build"/bin/*.wds "$work/program/"
echo '{"general": {"enableSpeech": false, "enableBraille": true, "firstStart": false},
 "pronunciations": {}, "keybindings": {},
 "profiles": {"default": {"profile": ["Default", "default"]}}}' \
    >"$work/home/.local/share/orca/user-settings.conf"

start_xvfb "$work" || exit 1
pids+=($xvfb_pid)
export XDG_RUNTIME_DIR=$work/runtime HOME=$work/home
unset DBUS_SESSION_BUS_ADDRESS
openbox --sm-disable >/dev/null 2>&1 &
pids+=($!)
start_brltty "$work" || exit 1
date +%s.%N >"$work/start"

# The pretend display: logs what brltty shows, presses what comes in on keys.fifo.
mkfifo "$work/keys.fifo"
exec 5<>"$work/keys.fifo"
python3 - "$LEXICOVE_VR_SOCKET" "$work/shown" "$work/keys.fifo" <<'PY' &
import os, select, socket, sys, time
path, log, keys = sys.argv[1:]
display = socket.socket(socket.AF_UNIX)
display.connect(path)
display.sendall(b"cells 12\n")
out, fifo, pending, text = open(log, "w", buffering=1), os.open(keys, os.O_RDONLY), b"", ""
while True:
    ready, _, _ = select.select([display, fifo], [], [])
    if fifo in ready:
        for key in os.read(fifo, 256).decode().splitlines():
            display.sendall(key.encode() + b"\n")
    if display in ready:
        got = display.recv(4096)
        if not got:
            break
        pending += got
        while b"\n" in pending:
            line, pending = pending.split(b"\n", 1)
            line = line.decode("latin1")
            if line.startswith("Visual "):
                text = line[8:-1]
            elif line.startswith("Braille "):
                cells = line[9:-1].split("|")
                cursor = next((i + 1 for i, c in enumerate(cells) if "7" in c and "8" in c), 0)
                out.write("%.3f shown   %-12s cursor %d\n" % (time.time(), text, cursor))
PY
pids+=($!)

dbus-run-session -- bash -c '
    work=$0
    dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress >/dev/null
    orca --debug-file "$work/orca.log" >/dev/null 2>&1 &
    orca=$!
    sleep 8
    QT_QPA_PLATFORM=xcb "$work/program/lexicove" >/dev/null 2>&1 &
    game=$!
    while read -r wait key; do
        sleep "$wait"
        echo "$(date +%s.%N) key     $key" >>"$work/pressed"
        case $key in display*) echo "${key#display }" >"$work/keys.fifo" ;; *) xdotool key "$key" ;; esac
    done <<ROAD
6 Return
4 Return
5 alt+o
4 Right
2 KP_Enter
2 ctrl+l
2 display Route 5
2 display FWinRt
2 display FWinLt
2 Down
2 ctrl+t
3 Return
3 Escape
3 n
ROAD
    sleep 2
    kill $game
    kill -INT $orca
    sleep 1
' "$work" 2>/dev/null

PYTHONPATH=$here python3 - "$work" <<'PY'
import sys
from orca_timeline import orca_events, print_timeline, session_start
work = sys.argv[1]
start = session_start(work)
events = []
for name in ("pressed", "shown"):
    for line in open("%s/%s" % (work, name)):
        when, what = line.rstrip("\n").split(" ", 1)
        events.append((float(when) - start, what))
events += orca_events(work, start, "BRAILLE LINE:")
print_timeline(events)
PY
