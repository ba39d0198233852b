#!/bin/sh
# Measures the puzzle engine on word lists near the size test's limits:
# makes the corpora with make_corpus.py and runs lexicove-make-puzzles on
# them, printing counts, restarts, refusals by the time limit and the
# percentiles of the CPU milliseconds of placement and fill.
#
# usage: bench/measure_engine.sh BUILD_DIR [LISTS] [REPEATS]
set -eu
build=${1:?usage: measure_engine.sh BUILD_DIR [LISTS] [REPEATS]}
lists=${2:-4200}
repeats=${3:-3}
here=$(cd "$(dirname "$0")" && pwd)
tool="$build/bench/lexicove-make-puzzles"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo "== everyday word lengths (3 to 12 letters), $lists lists x $repeats seeds"
python3 "$here/make_corpus.py" --typical --count "$lists" --seed 3 > "$work/typical.txt"
"$tool" --seed 1 --repeat "$repeats" --summary < "$work/typical.txt" > /dev/null

echo "== four styles (short, long, mixed, equal), up to 40 words of 15, $lists lists"
python3 "$here/make_corpus.py" --count "$lists" --seed 2 > "$work/styles.txt"
"$tool" --seed 1 --summary < "$work/styles.txt" > /dev/null

echo "== three hard lists near the limits, 1000 times each"
for list in \
    "10x8 D dzuqe,mgahc,ghjiy,rmpyp,ybyml,zhpey,uoach,mdwnu,lzady,tshib" \
    "9x10 D hfkvbj,xtknry,tmmsqg,zqguel,feimdl,bwzxlo,btilwn,cihjku,sqaiih" \
    "10x7 H yzjs,qjbx,puzo,sqnn,tfrs,mjzd,hcob,iqfz,poyb,qbut,wwcd"; do
    echo "$list" | cut -c1-40
    echo "$list" | "$tool" --seed 1 --repeat 1000 --summary > /dev/null
done
