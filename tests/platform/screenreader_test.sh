#!/bin/bash
# The game under a screen reader's ears: atspi_listen.py walks from the main
# menu to a puzzle and back on a virtual display with its own accessibility
# bus (with_atspi.sh), listening as Orca does. The game runs from a program
# folder of its own (the executable, its sounds and the starter word lists),
# so the player's lists are neither needed nor touched. Exit code 77
# (skipped) without Xvfb.
#
#   usage: screenreader_test.sh <lexicove executable> <source folder>
set -u
usage="usage: screenreader_test.sh <lexicove executable> <source folder>"
program=${1:?$usage}
source_dir=${2:?$usage}
here=$(cd "$(dirname "$0")" && pwd)

if ! /usr/bin/python3 -c 'import pyatspi' 2>/dev/null; then
    command -v Xvfb >/dev/null || { echo "SKIPPED: Xvfb is not installed"; exit 77; }
    echo "FAILED: /usr/bin/python3 has no pyatspi (apt-get install python3-pyatspi at-spi2-core)"
    exit 1
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/lexicove-screenreader.XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/program"
cp "$program" "$work/program/lexicove" || exit 1
sounds=$(dirname "$program")
ls "$sounds"/*.wav >/dev/null 2>&1 || sounds=$source_dir/assets/sounds
cp "$sounds"/*.wav "$work/program/" 2>/dev/null
cp "$source_dir"/assets/wordlists/*.wds "$work/program/" || exit 1

"$here/with_atspi.sh" /usr/bin/python3 "$here/atspi_listen.py" "$work/program/lexicove"
