#!/bin/bash
# Plays the road to a puzzle and back into it under the real Orca, to see
# what the player hears and when: on a private X display, D-Bus session and
# PulseAudio server (nothing of the machine's own is touched), Orca at its
# default settings speaks through speech-dispatcher into one pipe sink and
# the game plays into another. Prints one timeline of the keys pressed,
# Orca's words (its debug log), when speech sounded and when the game
# sounded, in seconds from the start. Used to choose how long the puzzle
# waits before it plays its letter on getting the focus back.
#
#   usage: bench/measure_orca.sh BUILD_DIR
#   needs: orca speech-dispatcher speech-dispatcher-espeak-ng pulseaudio
#          pulseaudio-utils xvfb openbox xdotool at-spi2-core dbus
set -u
build=$(cd "${1:?usage: measure_orca.sh BUILD_DIR}" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
for tool in orca speech-dispatcher pulseaudio pactl Xvfb openbox xdotool dbus-run-session; do
    command -v "$tool" >/dev/null || { echo "$tool is not installed"; exit 1; }
done
work=$(mktemp -d)
pids=()
. "$here/../tests/support/xdisplay.sh"
trap 'kill ${pids[@]} 2>/dev/null; wait 2>/dev/null; rm -rf "$work"' EXIT
mkdir -p "$work/runtime" "$work/home" "$work/program"
chmod 700 "$work/runtime"
cp "$build/bin/lexicove" "$build"/bin/*.wav "$build"/bin/*.wds "$work/program/"

start_xvfb "$work" || exit 1
pids+=($xvfb_pid)
export XDG_RUNTIME_DIR=$work/runtime HOME=$work/home
unset DBUS_SESSION_BUS_ADDRESS PULSE_SINK
openbox --sm-disable >/dev/null 2>&1 &
pids+=($!)

# The game's sink first: it is the default, and Qt plays there; speech goes
# to the other through PULSE_SINK.
sink() { echo "module-pipe-sink sink_name=$1 file=$work/$1.fifo format=s16le rate=48000 channels=2 use_system_clock_for_timing=yes"; }
pulseaudio --daemonize=no -n --exit-idle-time=-1 --disable-shm=yes --use-pid-file=no \
    --load="module-native-protocol-unix socket=$work/native auth-anonymous=1" \
    --load="$(sink game)" --load="$(sink speech)" >/dev/null 2>&1 &
pids+=($!)
export PULSE_SERVER=unix:$work/native
for _ in $(seq 50); do [ -p "$work/game.fifo" ] && [ -p "$work/speech.fifo" ] && break; sleep 0.1; done
cat "$work/game.fifo" >"$work/game.raw" & pids+=($!)
cat "$work/speech.fifo" >"$work/speech.raw" & pids+=($!)
date +%s.%N >"$work/start"
pactl set-default-sink game

# Each key waits until Orca has long finished speaking.
cat >"$work/road" <<'ROAD'
8 Return main menu: Play a Puzzle
7 Return chooser: first list
8 alt+o options: OK
7 Right a move
2 KP_Enter where am I
5 ctrl+t time report
10 Return closes the message
6 ctrl+w words to find
8 Escape closes the list
6 Escape exit question
6 n No
ROAD
dbus-run-session -- bash -c '
    dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress >/dev/null
    PULSE_SINK=speech orca --debug-file "$0/orca.log" >/dev/null 2>&1 &
    orca=$!
    sleep 6
    QT_QPA_PLATFORM=xcb "$0/program/lexicove" >/dev/null 2>&1 &
    game=$!
    while read -r wait key what; do
        sleep "$wait"
        echo "$(date +%s.%N) $key ($what)" >>"$0/keys"
        xdotool key "$key"
    done <"$0/road"
    sleep 6
    kill $game $orca  # the speech-dispatcher Orca started ends by itself when idle
' "$work" 2>/dev/null

PYTHONPATH=$here python3 - "$work" <<'PY'
import array, math, sys
from orca_timeline import orca_events, print_timeline, session_start
work = sys.argv[1]
start = session_start(work)

def sounding(path, gap):
    """(start, end) of the stretches where the left channel is not silent."""
    samples = array.array('h')
    samples.frombytes(open(path, 'rb').read())
    left, window = samples[0::2], 480  # 10 ms
    spans, first, last = [], None, None
    for i in range(len(left) // window):
        chunk = left[i * window:(i + 1) * window:4]
        loud = math.sqrt(sum(x * x for x in chunk) / len(chunk)) > 300
        t = i * 0.01
        if loud:
            first = t if first is None else first
            last = t + 0.01
        elif first is not None and t - last > gap:
            spans.append((first, last))
            first = None
    return spans + ([(first, last)] if first is not None else [])

events = []
for line in open(work + '/keys'):
    when, what = line.split(' ', 1)
    events.append((float(when) - start, 'key     ' + what.strip()))
events += orca_events(work, start, 'SPEECH OUTPUT:', lambda said: said.split('{')[0].strip())
for name, gap in (('speech', 0.1), ('game', 0.05)):
    for a, b in sounding('%s/%s.raw' % (work, name), gap):
        events.append((a, '%-7s %.3f-%.3f s' % (name, a, b)))
print_timeline(events)
PY
