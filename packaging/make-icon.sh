#!/bin/sh
# Renders the 128 px icon from the drawing (needs rsvg-convert, from
# librsvg2-bin). The PNG is kept in the tree, so building needs neither.
set -eu
cd "$(dirname "$0")"
rsvg-convert --width 128 --height 128 lexicove.svg --output lexicove-128.png
