#!/usr/bin/env bash
# The Debian package as a user gets it. Its control fields; unpacked with dpkg-deb -x, its programs run
# where they lie and tell the project's version; it holds every file the install rules name (the data
# folder's included) and nothing else; and installed and purged with dpkg in a throwaway root, it leaves
# nothing behind. This machine's own root and package database are never touched.
#
# Usage: package_contents.sh <package folder> <source folder> <version>
set -u
test_name=package-contents
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
usage="usage: package_contents.sh <package folder> <source folder> <version>"
out=${1:?$usage}
source=${2:?$usage}
version=${3:?$usage}
require_tools dpkg dpkg-deb file appstreamcli
deb=$(ls "$out"/*.deb 2>/dev/null | head -n1)
[ -f "$deb" ] || fail "no package in $out (the package_build test makes it)"
work=$(mktemp -d "${TMPDIR:-/tmp}/glowdeck-package.XXXXXX") || exit 1
trap 'rm -rf "$work"' EXIT

# ---- The control fields ------------------------------------------------------------------------------------
field() { dpkg-deb --field "$deb" "$1"; }
[ "$(field Package)" = glowdeck ] || fail "Package: $(field Package)"
[ "$(field Version)" = "$version-1" ] || fail "Version: $(field Version), expected $version-1"
[ "$(field Section)" = utils ] || fail "Section: $(field Section)"
[ "$(field Priority)" = optional ] || fail "Priority: $(field Priority)"
grep -qE '^[^<>]+ <[^@<> ]+@[^@<> ]+>$' <<<"$(field Maintainer)" || fail "Maintainer: $(field Maintainer)"
grep -qw ruby <<<"$(field Recommends)" || fail "Recommends: $(field Recommends), expected ruby"
# Qt's own texts in the user's language; Glowdeck's translations are inside the program.
grep -qw qt6-translations-l10n <<<"$(field Recommends)" ||
    fail "Recommends: $(field Recommends), expected qt6-translations-l10n"
# dpkg-shlibdeps read the programs: the C library and Qt, with versions.
for library in libc6 libqt6core6 libqt6network6 libqt6widgets6; do
    grep -qE "(^|, )$library \(>= [0-9.]+\)" <<<"$(field Depends)" ||
        fail "Depends lacks $library: $(field Depends)"
done
[ "$(field Description | wc -l)" -ge 3 ] || fail "Description has no long text: $(field Description)"

# ---- Unpacked: the programs run where they lie -------------------------------------------------------------
root="$work/unpacked"
dpkg-deb -x "$deb" "$root" || fail "dpkg-deb -x failed"
expect_version() {
    local got
    got=$(env -u DISPLAY -u WAYLAND_DISPLAY "$root/usr/bin/$1" --version 2>&1)
    [ "$got" = "$2 $version" ] || fail "$1 --version says \"$got\", expected \"$2 $version\""
}
expect_version glowdeckctl glowdeckctl
expect_version glowdeck Glowdeck # no display needed
expect_version glowdeck-simulator glowdeck-simulator
env -u DISPLAY -u WAYLAND_DISPLAY "$root/usr/bin/glowdeck" --help | grep -q "Glowdeck $version" ||
    fail "glowdeck --help does not name the version"

# ---- Every file the install rules name, and nothing else ---------------------------------------------------
id=com.brambleworks.Glowdeck
expected=(
    usr/bin/glowdeck usr/bin/glowdeckctl usr/bin/glowdeck-simulator
    usr/share/applications/$id.desktop
    usr/share/dbus-1/services/$id.service
    usr/share/metainfo/$id.metainfo.xml
    usr/share/icons/hicolor/scalable/apps/$id.svg
    usr/share/man/man1/glowdeck.1.gz usr/share/man/man1/glowdeckctl.1.gz
    usr/share/man/man1/glowdeck-simulator.1.gz
    usr/share/bash-completion/completions/glowdeckctl
    usr/share/doc/glowdeck/copyright usr/share/doc/glowdeck/changelog.Debian.gz
)
sizes=(16 22 24 32 48 64 128 256 512)
for size in "${sizes[@]}"; do
    expected+=("usr/share/icons/hicolor/${size}x${size}/apps/$id.png")
done
# The data folder as it is now: files other engineers add there are installed without a change elsewhere.
while IFS= read -r file; do
    expected+=("usr/share/glowdeck/$file")
done < <(cd "$source/data" && find . -type f ! -path ./README.md | sed 's|^\./||')

(cd "$root" && find . -type f | sed 's|^\./||' | sort) >"$work/packaged"
printf '%s\n' "${expected[@]}" | sort >"$work/expected"
missing=$(comm -13 "$work/packaged" "$work/expected")
extra=$(comm -23 "$work/packaged" "$work/expected")
[ -z "$missing" ] || fail "the package lacks:"$'\n'"$missing"
[ -z "$extra" ] ||
    fail "the package holds files this test does not know (add them to its list):"$'\n'"$extra"
for size in "${sizes[@]}"; do
    kind=$(file -b "$root/usr/share/icons/hicolor/${size}x${size}/apps/$id.png")
    grep -q "PNG image data, $size x $size," <<<"$kind" || fail "the ${size}x${size} icon is $kind"
done
for program in glowdeck glowdeckctl glowdeck-simulator; do
    file -b "$root/usr/bin/$program" | grep -q ', stripped' || fail "$program is not stripped"
done
# The metadata, the desktop entry and the icon as a software centre finds them in the installed tree.
tree=$(appstreamcli validate-tree --no-net --no-color "$root" 2>&1) ||
    fail "appstreamcli validate-tree on the unpacked package:"$'\n'"$tree"
say "${#expected[@]} files, as the install rules name them"

# ---- Installed and purged in a throwaway root --------------------------------------------------------------
# An empty package database of its own; the dependencies are not there, and no root is needed. The
# forces cover exactly that: not root, no dependencies, no ldconfig on a user's PATH.
throwaway="$work/root"
mkdir -p "$throwaway/var/lib/dpkg/info" "$throwaway/var/lib/dpkg/updates" "$throwaway/var/lib/dpkg/triggers"
touch "$throwaway/var/lib/dpkg/status"
run_dpkg() {
    dpkg --root="$throwaway" --log=/dev/null --force-not-root --force-depends --force-bad-path "$@" \
        >"$work/dpkg.log" 2>&1 || {
        cat "$work/dpkg.log"
        fail "dpkg $* failed"
    }
}
outside_database() {
    (cd "$throwaway" && find . -mindepth 1 ! -path ./var ! -path ./var/lib ! -path './var/lib/dpkg*' | sort)
}
run_dpkg --install "$deb"
status=$(dpkg-query --admindir="$throwaway/var/lib/dpkg" -W -f='${Status}' glowdeck)
[ "$status" = "install ok installed" ] || fail "dpkg did not install the package: $status"
installed=$(outside_database | wc -l)
ls "$throwaway/var/lib/dpkg/info" | grep -vE '^glowdeck\.(list|md5sums)$|^format$' | grep . &&
    fail "the package brought maintainer scripts or other control files"
run_dpkg --purge glowdeck
left=$(outside_database)
[ -z "$left" ] || fail "purging the package left:"$'\n'"$left"
ls "$throwaway/var/lib/dpkg/info" | grep '^glowdeck' && fail "dpkg still keeps records of the package"
say "installed $installed files and folders in a throwaway root, purged them all"
say "PASS"
