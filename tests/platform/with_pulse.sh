#!/bin/bash
# Runs a command with a sound server of its own: a private PulseAudio whose
# only output is a pipe, the named pipe LEXICOVE_SOUND_PIPE (16-bit little-
# endian stereo samples at 48 kHz, written in real time in blocks of about
# 20 ms), so that the command can hear what it played. Nothing of the machine's own sound is used. Exit
# code 77 (skipped) without PulseAudio.
#
#   usage: with_pulse.sh <command> [arguments...]
set -u
[ $# -ge 1 ] || { echo "usage: with_pulse.sh <command> [arguments...]"; exit 2; }
if ! command -v pulseaudio >/dev/null || ! command -v pactl >/dev/null; then
    echo "SKIPPED: PulseAudio is not installed (apt-get install pulseaudio pulseaudio-utils)"
    exit 77
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/lexicove-pulse.XXXXXX")
server_pid=
trap '[ -n "$server_pid" ] && { pactl exit 2>/dev/null; kill $server_pid 2>/dev/null; wait; }; rm -rf "$work"' EXIT
mkdir -p "$work/runtime" "$work/home"
chmod 700 "$work/runtime"
export XDG_RUNTIME_DIR=$work/runtime HOME=$work/home
unset DBUS_SESSION_BUS_ADDRESS PULSE_SINK
export PULSE_SERVER=unix:$work/native LEXICOVE_SOUND_PIPE=$work/sink.fifo

pulseaudio --daemonize=no -n --exit-idle-time=-1 --disable-shm=yes --use-pid-file=no \
    --load="module-native-protocol-unix socket=$work/native auth-anonymous=1" \
    --load="module-pipe-sink sink_name=pipe file=$LEXICOVE_SOUND_PIPE format=s16le rate=48000 channels=2 use_system_clock_for_timing=yes" \
    >"$work/pulse.log" 2>&1 &
server_pid=$!
for _ in $(seq 100); do
    pactl info >/dev/null 2>&1 && [ -p "$LEXICOVE_SOUND_PIPE" ] && break
    sleep 0.1
done
if ! pactl set-default-sink pipe 2>/dev/null; then
    echo "FAILED: the private PulseAudio did not start:"
    cat "$work/pulse.log"
    exit 1
fi
"$@"
