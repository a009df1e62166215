#!/usr/bin/env bash
# Builds the Debian package once for the package tests (a ctest fixture), as the README says: cpack -G DEB
# in the build folder. Prints how long it took.
#
# Usage: build_package.sh <cpack> <build folder> <package folder>
set -u
test_name=package-build
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
usage="usage: build_package.sh <cpack> <build folder> <package folder>"
cpack=${1:?$usage}
build=${2:?$usage}
out=${3:?$usage}
require_tools dpkg-shlibdeps file

rm -rf "$out"
mkdir -p "$out" || exit 1
started=$(date +%s%N)
if ! "$cpack" -G DEB --config "$build/CPackConfig.cmake" -B "$out" >"$out/cpack.log" 2>&1; then
    cat "$out/cpack.log"
    fail "cpack -G DEB failed"
fi
packages=("$out"/*.deb)
[ -f "${packages[0]}" ] && [ ${#packages[@]} -eq 1 ] ||
    fail "cpack made ${#packages[@]} packages: ${packages[*]}"
say "built $(basename "${packages[0]}") in $((($(date +%s%N) - started) / 1000000)) ms"
