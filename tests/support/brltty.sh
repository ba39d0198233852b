# brltty of a test's own, with a pretend braille display, for the shell
# tests and measuring scripts to source. Nothing of the machine's own brltty
# or its settings is used.
#
#   start_brltty <work folder>
#
# starts brltty on its virtual driver, which waits on the Unix socket
# <work folder>/vr.sock for a display to connect, and serves BrlAPI on a
# number of its own (BrlAPI's sockets all lie in /var/lib/BrlAPI) with no
# key needed. It exports what a BrlAPI client and the pretend display need:
# BRLAPI_HOST, BRLAPI_AUTH, WINDOWPATH (the X session's place in brltty's
# tty tree, as an X session sets it), LEXICOVE_VR_SOCKET and
# LEXICOVE_BRLTTY_PID; and sets brltty_pid. stop_brltty stops it and removes its BrlAPI socket. Returns 1,
# having said why, when brltty does not start.
brlapi_dir=/var/lib/BrlAPI

start_brltty() {
    local work=$1 n
    mkdir -p "$work/brltty"
    # A BrlAPI number nobody uses: no socket and no lock file of that name.
    for n in $(seq $((40 + $$ % 50)) 200); do
        [ -e "$brlapi_dir/$n" ] || [ -e "$brlapi_dir/.$n" ] || break
    done
    brlapi_number=$n
    # -M 1: brltty's start message gives the display up after 10 ms.
    brltty -n -e -q -f /dev/null -F "$work/brltty/prefs" -W "$work/brltty" -U "$work/brltty" \
        -M 1 -b vr -d "server:$work/vr.sock" -x no -s no -t en-nabcc \
        -A "auth=none,host=:$n" >"$work/brltty.log" 2>&1 &
    brltty_pid=$!
    for _ in $(seq 100); do
        [ -S "$work/vr.sock" ] && [ -S "$brlapi_dir/$n" ] && break
        kill -0 "$brltty_pid" 2>/dev/null || break
        sleep 0.1
    done
    if ! [ -S "$work/vr.sock" ] || ! [ -S "$brlapi_dir/$n" ]; then
        echo "FAILED: brltty did not start:"
        cat "$work/brltty.log"
        return 1
    fi
    export BRLAPI_HOST=:$n BRLAPI_AUTH=none WINDOWPATH=1 LEXICOVE_VR_SOCKET=$work/vr.sock \
        LEXICOVE_BRLTTY_PID=$brltty_pid
}

stop_brltty() {
    [ -n "${brltty_pid:-}" ] || return 0
    kill -CONT "$brltty_pid" 2>/dev/null
    kill "$brltty_pid" 2>/dev/null
    # brltty waiting for a display to connect does not end on SIGTERM.
    for _ in $(seq 20); do
        kill -0 "$brltty_pid" 2>/dev/null || break
        sleep 0.1
    done
    kill -9 "$brltty_pid" 2>/dev/null
    wait "$brltty_pid" 2>/dev/null
    rm -f "$brlapi_dir/$brlapi_number" "$brlapi_dir/.$brlapi_number"
    brltty_pid=
}
