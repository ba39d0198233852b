#!/usr/bin/env bash
# Sets up a Debian or Ubuntu machine for Lexicove, builds it, and then either
# starts the game (run), runs every test headless (test), makes the Debian
# package lexicove_<version>_<arch>.deb in build-package (package), or runs the
# checks that CI adds after the tests (check): the whole test suite again in a
# separate clang build with AddressSanitizer and UndefinedBehaviorSanitizer
# (halting at the first report, leaks checked), then each fuzz target of
# tests/fuzz for $LEXICOVE_FUZZ_SECONDS (60) seconds from its seed corpus.
set -euo pipefail

mode=${1:-run}
case "$mode" in run|test|package|check) ;; *) echo "usage: $0 run|test|package|check" >&2; exit 2 ;; esac

here=$(cd "$(dirname "$0")/.." && pwd)
build=${LEXICOVE_BUILD_DIR:-$here/build}
check_build=${LEXICOVE_CHECK_BUILD_DIR:-$here/build-check}
fuzz_seconds=${LEXICOVE_FUZZ_SECONDS:-60}

# libbrlapi-dev: braille displays through brltty.
packages=(cmake make g++ qt6-base-dev qt6-multimedia-dev libcups2-dev libbrlapi-dev
          libbenchmark-dev fonts-liberation)
if [ "$mode" = test ] || [ "$mode" = check ]; then
    packages+=(xvfb openbox xdotool dbus at-spi2-core python3 python3-pyatspi)
    # A private sound server whose output the sound soak test listens to.
    packages+=(pulseaudio pulseaudio-utils)
    # brltty of the braille test's own, on a pretend display (its service is not started).
    packages+=(brltty)
    # A private print server with a PDF queue and a braille embosser queue.
    packages+=(cups-daemon cups-client cups-filters liblouis-bin liblouis-data poppler-utils)
    # The installed game and its package, checked.
    packages+=(desktop-file-utils appstream inotify-tools lintian)
fi
if [ "$mode" != run ]; then
    # The package's dependencies are computed from the executable.
    packages+=(dpkg-dev file)
fi
if [ "$mode" = check ]; then
    # The sanitizers and libFuzzer come with clang's runtime libraries.
    packages+=(clang)
fi

sudo=""
[ "$(id -u)" -ne 0 ] && sudo=sudo
updated=no
install() {
    local missing=() p
    for p in "$@"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' ||
            missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing: ${missing[*]}"
    if [ $updated = no ]; then
        $sudo env DEBIAN_FRONTEND=noninteractive apt-get update -qq
        updated=yes
    fi
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "${missing[@]}"
}
install "${packages[@]}"

# Configures and builds the game in the folder $1, with the CMake options
# that follow.
build_in() {
    local dir=$1
    shift
    cmake -S "$here" -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
    cmake --build "$dir" -j"$(nproc)"
}

# Runs the tests of the build in the folder $1 headless, with the ctest
# options that follow.
test_in() {
    local dir=$1
    shift
    (cd "$dir" && XDG_RUNTIME_DIR="$runtime_dir" QT_QPA_PLATFORM=offscreen \
        ctest --output-on-failure -j"$(nproc)" "$@")
}

if [ "$mode" = check ]; then
    # The runtime package is named after clang's version (libclang-rt-14-dev
    # on Debian 12); older releases keep the runtime in libclang-common.
    clang_version=$(clang --version | sed -n 's/.*clang version \([0-9]*\).*/\1/p' | head -n1)
    for runtime in "libclang-rt-$clang_version-dev" "libclang-common-$clang_version-dev"; do
        if apt-cache show "$runtime" >/dev/null 2>&1; then
            install "$runtime"
            break
        fi
    done
fi

if [ "$mode" = package ]; then
    # The game alone, built with Debian's hardening flags.
    build=${LEXICOVE_PACKAGE_BUILD_DIR:-$here/build-package}
    eval "$(DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --export=sh)"
    export CXXFLAGS="$CPPFLAGS $CXXFLAGS"
    build_in "$build" -DLEXICOVE_BUILD_TESTS=OFF -DLEXICOVE_BUILD_BENCH=OFF
    rm -f "$build"/lexicove_*.deb
    (cd "$build" && cpack -G DEB)
    deb=$(ls "$build"/lexicove_*.deb)
    echo "Made $deb"
    echo "Install it with: sudo apt install $deb"
    exit 0
fi

runtime_dir=$(mktemp -d)
chmod 700 "$runtime_dir"
trap 'rm -rf "$runtime_dir"' EXIT

if [ "$mode" != check ]; then
    build_in "$build"
    if [ "$mode" = run ]; then
        exec "$build/bin/lexicove"
    fi
    test_in "$build"
    exit
fi

CC=clang CXX=clang++ build_in "$check_build" -DLEXICOVE_SANITIZE=ON -DLEXICOVE_FUZZ=ON \
    -DLEXICOVE_BUILD_BENCH=OFF

# Any report from AddressSanitizer (leaks included) or UBSan ends the program
# that made it with an error, and so fails its test.
export ASAN_OPTIONS=halt_on_error=1:detect_leaks=1
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
export LSAN_OPTIONS=suppressions=$here/tests/lsan-suppressions.txt
# The sound soak listens for every sound played in real time; the sanitizers
# make the game too slow to keep time with the sound server, and the soak
# checks nothing they look at.
echo "== the test suite under AddressSanitizer and UndefinedBehaviorSanitizer"
test_in "$check_build" -E soundsoak

# New inputs go to a scratch folder; the committed seeds stay as they are.
for fuzzer in "$check_build"/fuzz/fuzz_*; do
    name=$(basename "$fuzzer")
    name=${name#fuzz_}
    echo "== fuzzing $name for $fuzz_seconds s"
    mkdir -p "$runtime_dir/$name"
    "$fuzzer" -max_total_time="$fuzz_seconds" -print_final_stats=1 \
        -artifact_prefix="$check_build/fuzz/$name-" "$runtime_dir/$name" \
        "$here/tests/fuzz/corpus/$name" 2>"$runtime_dir/$name.log" ||
        { tail -n 60 "$runtime_dir/$name.log"; echo "FAILED: fuzz target $name"; exit 1; }
    grep -E '^(Done|stat::number_of_executed_units|stat::new_units_added)' "$runtime_dir/$name.log"
done
echo "== checks passed"
