# A virtual X display of a test's own, for the shell tests to source.
#
#   start_xvfb <work folder>
#
# starts Xvfb on a free display number (it writes the number to fd 3), sets
# and exports DISPLAY and sets xvfb_pid (the caller stops it). Returns 1, having
# said why, when Xvfb does not start within 10 s.
start_xvfb() {
    Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$1/display" >"$1/xvfb.log" 2>&1 &
    xvfb_pid=$!
    for _ in $(seq 100); do
        [ -s "$1/display" ] && break
        sleep 0.1
    done
    [ -s "$1/display" ] || { echo "FAILED: Xvfb did not start:"; cat "$1/xvfb.log"; return 1; }
    export DISPLAY=:$(head -n1 "$1/display")
}
