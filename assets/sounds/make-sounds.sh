#!/bin/bash
# Makes the game's sound files: one spoken letter name per character that can
# stand in the puzzle grid, and the four signal sounds. The .wav files are
# kept in this folder, so building the game needs neither tool; run this
# again only to change them.
#
#   needs: espeak-ng (Debian's, with its voices) and sox
#   usage: make-sounds.sh [output folder]   (default: this script's folder)
#
# Every file is 16-bit PCM mono at 22050 Hz. Letters are trimmed tightly at
# the start, so that a letter is heard as soon as the cursor lands on it, and
# every file ends in 200 ms of silence, because some audio back ends
# (QSoundEffect on PulseAudio) drop the last 100-200 ms of a sound.
set -euo pipefail
export LC_ALL=C.UTF-8

out=${1:-$(cd "$(dirname "$0")" && pwd)}
mkdir -p "$out"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

rate=22050
# -D: no dither, so that the same tools make the same bytes every run.
fmt=(-D -r "$rate" -c 1 -b 16 -e signed-integer)

# The voice of each character, and what it is given when that is not the
# character itself. A line's characters (several when they share a voice and
# none is given other words) are spoken one by one. espeak-ng says a lone
# character by its name in the voice's language: en-us "zee", "e acute";
# pl "eł" for ł, cs "čé" for č, el "λάμδα" for λ, ru "эм" for м. Latin-1 keeps
# the American English voice. Every other letter is spoken by the voice of a
# language that writes it, so that its readers know it, except where that
# voice reads it wrongly or not at all (en-us names "ĸ" "kra" and "ŋ" "eng";
# af reads "ŉ" as a code point number). Words or phonemes ([[...]]) stand in
# where a voice's own reading is wrong, too short to catch (the Russian
# voice's и and у last 40 and 90 ms) or would sound like another letter: the
# Russian voice names е "je", и "i" and г "ge", which is how Ukrainian names
# є, і and ґ, so those three say that they are the Ukrainian ones.
#
# Final sigma and long s have no file: where names ignore case, "ς.wav" and
# "ſ.wav" are "σ.wav" and "s.wav", whose sounds ("sigma", "ess") name them.

speak() { # voice, what it is given, output file
    espeak-ng -v "$1" -s 170 -w "$work/raw.wav" -- "$2" </dev/null 2>"$work/espeak.log" ||
        { cat "$work/espeak.log" >&2; return 1; }
    # Leading and trailing silence off (anything under 0.3% of full scale).
    sox "$work/raw.wav" "${fmt[@]}" "$work/trim.wav" \
        silence 1 0.001 0.3% reverse silence 1 0.001 0.3% reverse
    # A separate run: a fade needs a file's length, which a pipe doesn't give.
    # A gentle compressor lifts the voice's weak opening sounds ("f" of "four",
    # "th" of "three") so that they too are heard at once; then 2 ms fade-in and
    # 20 ms fade-out against clicks, peak at -1 dBFS and 200 ms of silence.
    sox "$work/trim.wav" "${fmt[@]}" "$3" \
        compand 0.002,0.06 -80,-80,-45,-30,-20,-12,0,-6 0 -60 \
        fade t 0.002 -0 0.02 gain -n -1 pad 0 0.2
}

made=0
while read -r characters voice words; do
    for ((i = 0; i < ${#characters}; i++)); do
        c=${characters:i:1}
        speak "$voice" "${words:-$c}" "$out/$c.wav"
        made=$((made + 1))
    done
done <<'END'
abcdefghijklmnopqrstuvwxyz0123456789  en-us
-   en-us  hyphen
'   en-us  apostrophe
à   en-us  [[,eI_|gr'A:v]]
áâãäåæçèéêëìíîïðñòóôõöøùúûüýþÿß  en-us
āēģīķļņŗū  lv
ăţ  ro
ąćęłńśźż  pl
ĉĝĥĵŝŭ  eo
ċġħ  mt
čďěňřšťůž  cs
đ   hr
ėų  lt
į   lt  i nosinė
ğış  tr
ĩũ  vi
ĳ   nl  lange ij
ĺľŕ  sk
ŀ   ca  ela geminada
őű  hu
ō   mi
œ   fr  e dans l'o
ŵ   cy  w to bach
ŷ   cy  y to bach
ĕĭŏĸŋŧ  en-us
ŉ   en-us  apostrophe n
ΐάέήίΰαβγδεζηθικλμνξοπρστυφχψωϊϋόύώ  el
абвгдежзйклмнопрстфхцчшщъыьэюяё  ru
и   ru  [['i:]]
у   ru  [['u:]]
ї   uk
є   uk  є українська
і   uk  і українська
ґ   uk  ґе українська
ў   be
ђјљњћџ  sr
ѓѕќ  mk
ѐ   bg  е с ударение
ѝ   bg  и с ударение
END

# Tones are made at the output's rate, so no resampling is needed.
tone=(-r "$rate" -c 1 -n)

note() { # seconds, wave, frequency, output file
    sox "${tone[@]}" "${fmt[@]}" "$4" synth "$1" "$2" "$3" vol 0.9 fade q 0.005 "$1" 0.04
}

# mark: a short high blip.
sox "${tone[@]}" "${fmt[@]}" "$work/blip.wav" synth 0.07 sine 1760 fade q 0.003 0.07 0.03
sox "$work/blip.wav" "${fmt[@]}" "$out/mark.wav" gain -n -3 pad 0 0.2

# wrong: a low buzz, two close square tones beating against each other.
sox -r "$rate" -c 2 -n "${fmt[@]}" "$work/buzz.wav" synth 0.4 square 110 square 117 \
    remix 1v0.45,2v0.45 fade q 0.01 0.4 0.06
sox "$work/buzz.wav" "${fmt[@]}" "$out/wrong.wav" gain -n -4 pad 0 0.2

# cheer1: a quick rising major arpeggio, C E G C, the last note held.
note 0.11 sine 523.25 "$work/c1.wav"
note 0.11 sine 659.25 "$work/c2.wav"
note 0.11 sine 783.99 "$work/c3.wav"
note 0.45 sine 1046.50 "$work/c4.wav"
sox "$work/c1.wav" "$work/c2.wav" "$work/c3.wav" "$work/c4.wav" "${fmt[@]}" "$work/cheer1.wav"
sox "$work/cheer1.wav" "${fmt[@]}" "$out/cheer1.wav" gain -n -1 pad 0 0.2

# cheer2: a slower falling minor arpeggio, G E-flat C, on a softer tone.
note 0.28 triangle 392.00 "$work/d1.wav"
note 0.28 triangle 311.13 "$work/d2.wav"
note 0.60 triangle 261.63 "$work/d3.wav"
sox "$work/d1.wav" "$work/d2.wav" "$work/d3.wav" "${fmt[@]}" "$work/cheer2.wav"
sox "$work/cheer2.wav" "${fmt[@]}" "$out/cheer2.wav" gain -n -1 pad 0 0.2

echo "made $((made + 4)) sounds in $out"
