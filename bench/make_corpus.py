#!/usr/bin/env python3
"""Makes word lists near the limits of the options window's size test, for
measuring the puzzle engine with lexicove-make-puzzles.

Each output line is "LABEL<TAB>ROWSxCOLUMNS DIRECTIONS word,word,...". The
lists pass the size test (round(letters * 1.6) <= rows * columns, longest
word + 3 <= rows and columns) and sit near one or both of its limits:

  area   the letters fill the grid to within 2 % of what the test allows
  side   the longest word is exactly 3 shorter than the shorter side
  both   the two at once

in each of the seven direction sets (H, V, D, HV, HD, VD, HVD), with words of
four styles: short (2 to 5 letters), long (half the longest allowed or more),
mixed, and equal (all one length); or, with --typical, of everyday lengths
(3 to 12 letters, mostly 4 to 8). Words are random letters a to z.

By default the lists are such as the word list editor makes: at most 40
words of at most 15 letters. --max-words 50 --max-word 47 gives the extreme
lists that only a file made by other means can hold.

usage: make_corpus.py [--count N] [--seed S] [--typical] [--max-side M]
                      [--max-word W] [--max-words K] > corpus.txt
"""

import argparse
import random

DIRECTION_SETS = ["H", "V", "D", "HV", "HD", "VD", "HVD"]
MODES = ["area", "side", "both"]
STYLES = ["short", "long", "mixed", "equal"]
# Lengths of everyday words, 3 to 12 letters, by how often they occur.
TYPICAL_LENGTHS = [3] * 8 + [4] * 14 + [5] * 16 + [6] * 16 + [7] * 15 + [8] * 12 \
    + [9] * 8 + [10] * 6 + [11] * 3 + [12] * 2


def most_letters(rows, columns):
    """The largest letter count that passes the area part of the size test."""
    letters = int(rows * columns / 1.6) + 2
    while round(letters * 1.6) > rows * columns:  # Python rounds half to even
        letters -= 1
    return letters


def lengths_for(rng, rows, columns, mode, style):
    longest = min(rows, columns, ARGS.max_word + 3) - 3
    limit = most_letters(rows, columns)
    if mode == "side":
        target = rng.randint(max(longest, limit // 3), limit)
    else:
        target = limit - rng.randint(0, max(0, limit // 50))
    if style == "typical":
        return typical_lengths(rng, longest, limit, target, mode)
    low = {"short": 2, "long": max(2, (longest + 1) // 2), "mixed": 2, "equal": 2}[style]
    high = {"short": min(5, longest), "long": longest, "mixed": longest,
            "equal": longest}[style]
    low = min(low, high)
    most_words = ARGS.max_words
    if style == "equal":
        count = min(most_words, max(1, round(target / rng.randint(low, high))))
        size = min(longest, target // count)
        if size < 1:
            size, count = 1, min(most_words, target)
        lengths = [size] * count
        if mode in ("side", "both"):
            lengths[0] = longest
            while len(lengths) > 1 and sum(lengths) > limit:
                lengths.pop()
        return lengths
    lengths = []
    total = 0
    if mode in ("side", "both"):
        lengths.append(longest)
        total = longest
    while len(lengths) < most_words and total < target:
        size = min(rng.randint(low, high), target - total)
        lengths.append(size)
        total += size
    # Too few words to reach the target with short words: lengthen them.
    while total < target:
        room = [i for i, size in enumerate(lengths) if size < longest]
        if not room:
            break
        i = rng.choice(room)
        grow = min(longest - lengths[i], target - total, rng.randint(1, 3))
        lengths[i] += grow
        total += grow
    return lengths


def typical_lengths(rng, longest, limit, target, mode):
    """Words of everyday lengths, as many as reach the target."""
    lengths = [longest] if mode in ("side", "both") else []
    while len(lengths) < ARGS.max_words and sum(lengths) < target:
        size = min(rng.choice(TYPICAL_LENGTHS), longest, target - sum(lengths))
        lengths.append(size)
    return lengths


def make_list(rng, directions):
    rows = rng.randint(5, ARGS.max_side)
    columns = rng.randint(5, ARGS.max_side)
    mode = rng.choice(MODES)
    style = "typical" if ARGS.typical else rng.choice(STYLES)
    lengths = lengths_for(rng, rows, columns, mode, style)
    rng.shuffle(lengths)
    words = ["".join(rng.choice("abcdefghijklmnopqrstuvwxyz") for _ in range(size))
             for size in lengths]
    label = f"{mode}-{style}-{directions}"
    return f"{label}\t{rows}x{columns} {directions} {','.join(words)}"


def main():
    rng = random.Random(ARGS.seed)
    for i in range(ARGS.count):
        print(make_list(rng, DIRECTION_SETS[i % len(DIRECTION_SETS)]))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--count", type=int, default=4200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--max-side", type=int, default=50)
    parser.add_argument("--typical", action="store_true",
                        help="words of everyday lengths (3 to 12 letters) instead of the"
                             " four styles")
    parser.add_argument("--max-word", type=int, default=15,
                        help="longest word (the editor's limit is 15)")
    parser.add_argument("--max-words", type=int, default=40,
                        help="most words in a list (the editor's limit is 40, the game's 50)")
    ARGS = parser.parse_args()
    main()
