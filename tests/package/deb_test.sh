#!/bin/bash
# The Debian package, made with cpack from this build: it holds exactly the
# game, its desktop entry, metainfo, icons, manual page and documents, every
# sound and every starter list, all under /usr and nothing from the build
# folder; its dependencies were computed from the executable, printing's
# helpers are recommended, and lintian finds no error in it (its warnings are
# printed). Exit code 77 (skipped) where a tool it needs is not installed.
#
#   usage: deb_test.sh <cpack> <build folder> <source folder> <application id>
set -u
usage="usage: deb_test.sh <cpack> <build folder> <source folder> <application id>"
cpack=${1:?$usage}
build=${2:?$usage}
source_dir=${3:?$usage}
app_id=${4:?$usage}

for tool in dpkg-deb:dpkg dpkg-shlibdeps:dpkg-dev lintian:lintian; do
    command -v "${tool%%:*}" >/dev/null ||
        { echo "SKIPPED: ${tool%%:*} is not installed (apt-get install ${tool##*:})"; exit 77; }
done

work=$(mktemp -d "${TMPDIR:-/tmp}/lexicove-deb.XXXXXX")
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*"; exit 1; }

(cd "$work" && "$cpack" -G DEB --config "$build/CPackConfig.cmake" -B "$work") \
    >"$work/cpack.log" 2>&1 || { cat "$work/cpack.log"; fail "cpack"; }
debs=("$work"/lexicove_*.deb)
[ ${#debs[@]} -eq 1 ] && [ -f "${debs[0]}" ] || fail "cpack made no lexicove_<version>_<arch>.deb"
deb=${debs[0]}
echo "Package: $(basename "$deb")"

{
    echo ./usr/games/lexicove
    echo "./usr/share/applications/$app_id.desktop"
    echo "./usr/share/metainfo/$app_id.metainfo.xml"
    echo "./usr/share/icons/hicolor/scalable/apps/$app_id.svg"
    echo "./usr/share/icons/hicolor/128x128/apps/$app_id.png"
    echo ./usr/share/man/man6/lexicove.6.gz
    echo ./usr/share/doc/lexicove/copyright
    echo ./usr/share/doc/lexicove/changelog.gz
    for f in "$source_dir"/assets/sounds/*.wav; do
        echo "./usr/share/lexicove/sounds/$(basename "$f")"
    done
    for f in "$source_dir"/assets/wordlists/*.wds; do
        echo "./usr/share/lexicove/wordlists/$(basename "$f")"
    done
} | LC_ALL=C sort >"$work/expected"
dpkg-deb --fsys-tarfile "$deb" | tar -t | grep -v '/$' | LC_ALL=C sort >"$work/files"
diff "$work/expected" "$work/files" || fail "the package's files differ from the list above"
[ "$(grep -c '/sounds/' "$work/files")" -eq 222 ] || fail "the package has not the 222 sounds"
[ "$(grep -c '/wordlists/' "$work/files")" -eq 4 ] || fail "the package has not the 4 lists"
dpkg-deb -c "$deb" >"$work/contents"
grep -q '^-rwxr-xr-x root/root .* \./usr/games/lexicove$' "$work/contents" ||
    fail "the game is not an executable owned by root"
grep -v -e ' \./usr/' -e ' \./$' "$work/contents" && fail "files outside /usr"

field() { dpkg-deb -f "$deb" "$1"; }
[ "$(field Package)" = lexicove ] || fail "package name $(field Package)"
[ "$(field Section)" = games ] || fail "section $(field Section)"
depends=$(field Depends)
for library in libc6 libcups2 libqt6core6 libqt6gui6 libqt6widgets6 libqt6multimedia6 \
               libqt6printsupport6; do
    [[ ", $depends," == *", $library ("* ]] || fail "Depends lacks $library: $depends"
done
recommends=$(field Recommends)
for package in cups-client fonts-liberation; do
    [[ ", $recommends," == *", $package,"* ]] || fail "Recommends lacks $package: $recommends"
done

lintian --fail-on error --display-info "$deb" 2>&1 | grep -v 'running with root privileges' \
    | tee "$work/lintian.log"
[ "${PIPESTATUS[0]}" -eq 0 ] || fail "lintian found errors"
echo "PASSED: $(basename "$deb"), lintian: $(grep -c '^W:' "$work/lintian.log") warnings"
