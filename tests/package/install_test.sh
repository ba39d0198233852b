#!/bin/bash
# The installed game as a player meets it. The build is installed into a
# prefix of its own (cmake --install --prefix), its desktop entry and
# metainfo are validated, and the game is started the way the desktop's menu
# starts it (the entry's Exec line, no terminal, / as its current folder, a
# new player's empty home) on a virtual X display. Checks that the main menu
# appears, the starter lists are copied into the player's data folder byte
# for byte, a puzzle played from the first list opens its letter and mark
# sounds from the installed data folder, nothing in the install changes, and
# Escape ends the game cleanly.
# Exit code 77 (skipped) where a tool it needs is not installed.
#
#   usage: install_test.sh <build folder> <source folder> <application id>
set -u
usage="usage: install_test.sh <build folder> <source folder> <application id>"
build=${1:?$usage}
source_dir=${2:?$usage}
app_id=${3:?$usage}

for tool in desktop-file-validate:desktop-file-utils appstreamcli:appstream Xvfb:xvfb \
            xdotool:xdotool inotifywait:inotify-tools; do
    command -v "${tool%%:*}" >/dev/null ||
        { echo "SKIPPED: ${tool%%:*} is not installed (apt-get install ${tool##*:})"; exit 77; }
done

work=$(mktemp -d "${TMPDIR:-/tmp}/lexicove-install.XXXXXX")
xvfb_pid= watch_pid= game_pid=
trap 'kill $game_pid $watch_pid $xvfb_pid 2>/dev/null; wait; rm -rf "$work"' EXIT
fail() { echo "FAILED: $*"; exit 1; }

prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >"$work/install.log" 2>&1 ||
    { cat "$work/install.log"; fail "cmake --install"; }

desktop=$prefix/share/applications/$app_id.desktop
metainfo=$prefix/share/metainfo/$app_id.metainfo.xml
[ -f "$metainfo" ] || fail "no metainfo at $metainfo"
desktop-file-validate "$desktop" || fail "desktop-file-validate $desktop"
# The metainfo, and that the entry it launches is installed beside it.
appstreamcli validate-tree --no-net "$prefix" || fail "appstreamcli validate-tree $metainfo"

sounds=$prefix/share/lexicove/sounds
[ -f "$sounds/a.wav" ] || fail "no letter sound at $sounds/a.wav"
snapshot() { (cd "$prefix" && find . -printf '%p %y %s %T@\n' | LC_ALL=C sort); }
snapshot >"$work/before"

. "$(dirname "$0")/../support/xdisplay.sh"
start_xvfb "$work" || exit 1

# Every file the game opens in its installed sounds folder.
inotifywait -m -e open --format %f "$sounds" >"$work/opened" 2>"$work/watch.log" &
watch_pid=$!
for _ in $(seq 100); do
    grep -q 'Watches established' "$work/watch.log" && break
    sleep 0.1
done
grep -q 'Watches established' "$work/watch.log" || { cat "$work/watch.log"; fail "inotifywait"; }

command=$(sed -n 's/^Exec=//p' "$desktop")
[ "$command" = lexicove ] || fail "the desktop entry starts \"$command\", not lexicove"
mkdir -p "$work/home" "$work/runtime"
chmod 700 "$work/runtime"
# A menu's bare environment; only a sanitizer build's own settings pass.
(cd / && exec env -i HOME="$work/home" PATH="$prefix/games:/usr/bin:/bin" DISPLAY="$DISPLAY" \
    XDG_RUNTIME_DIR="$work/runtime" QT_QPA_PLATFORM=xcb ASAN_OPTIONS="${ASAN_OPTIONS:-}" \
    UBSAN_OPTIONS="${UBSAN_OPTIONS:-}" LSAN_OPTIONS="${LSAN_OPTIONS:-}" "$command" </dev/null \
    >"$work/game.log" 2>&1) &
game_pid=$!

window=$(timeout 20 xdotool search --sync --name '^Lexicove - Select Option$' |
         head -n1)
[ -n "$window" ] || { cat "$work/game.log"; fail "the main menu did not appear within 20 s"; }

lists=$work/home/.local/share/Lexicove
for list in "$source_dir"/assets/wordlists/*.wds; do
    cmp "$list" "$lists/$(basename "$list")" || fail "starter list $(basename "$list") not copied"
done
# Play a Puzzle, the first list, OK: the puzzle window loads its sounds.
xdotool windowfocus --sync "$window" key Return
chooser=$(timeout 10 xdotool search --sync --name '^Lexicove - Select Word List$' | head -n1)
[ -n "$chooser" ] || fail "Play a Puzzle did not open the word list chooser"
xdotool windowfocus --sync "$chooser" key Return
options=$(timeout 10 xdotool search --sync --name '^Lexicove - Set Options$' | head -n1)
[ -n "$options" ] || fail "the chooser did not open the options window"
xdotool windowfocus --sync "$options" key alt+o
puzzle=$(timeout 10 xdotool search --sync --onlyvisible --name '^Lexicove$' | head -n1)
[ -n "$puzzle" ] || fail "the options window did not open the puzzle"
letters() { grep -vx -e mark.wav -e wrong.wav -e cheer1.wav -e cheer2.wav "$work/opened" |
            grep -q '\.wav$'; }
for _ in $(seq 100); do
    grep -qx mark.wav "$work/opened" && letters && break
    sleep 0.1
done
grep -qx mark.wav "$work/opened" || fail "the puzzle never opened $sounds/mark.wav"
letters || fail "the puzzle never opened a letter sound in $sounds"
# Escape, Yes: back to the main menu, where Escape ends the game.
xdotool windowfocus --sync "$puzzle" key Escape
question=$(timeout 10 xdotool search --sync --onlyvisible --name '^Confirmation$' | head -n1)
[ -n "$question" ] || fail "Escape in the puzzle did not ask to leave it"
xdotool windowfocus --sync "$question" key Return
timeout 10 bash -c "until xdotool search --onlyvisible --name '^Lexicove - Select Option\$' \
    >/dev/null; do sleep 0.1; done" || fail "Yes to the exit question did not bring the menu back"
xdotool windowfocus --sync "$window" key Escape
for _ in $(seq 100); do
    kill -0 $game_pid 2>/dev/null || break
    sleep 0.1
done
kill -0 $game_pid 2>/dev/null && fail "Escape in the main menu did not end the game"
wait $game_pid
status=$?
game_pid=
[ $status -eq 0 ] || { cat "$work/game.log"; fail "the game ended with exit code $status"; }

snapshot >"$work/after"
diff "$work/before" "$work/after" || fail "the game wrote into its install"
echo "PASSED: installed under $prefix, started from its menu entry"
