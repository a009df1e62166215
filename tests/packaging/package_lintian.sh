#!/usr/bin/env bash
# Debian's own checks of the package: lintian finds no error. Its warnings are printed for the record; the
# accepted ones are listed in packaging/README.md.
#
# Usage: package_lintian.sh <package folder>
set -u
test_name=package-lintian
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
out=${1:?usage: package_lintian.sh <package folder>}
require_tools lintian
deb=$(ls "$out"/*.deb 2>/dev/null | head -n1)
[ -f "$deb" ] || fail "no package in $out (the package_build test makes it)"

as_root=()
[ "$(id -u)" -eq 0 ] && as_root=(--allow-root)
report=$(lintian "${as_root[@]}" --fail-on error "$deb" 2>&1)
status=$?
[ -n "$report" ] && echo "$report"
[ "$status" -eq 0 ] || fail "lintian found errors (exit $status)"
say "PASS: $(grep -c '^E:' <<<"$report") errors, $(grep -c '^W:' <<<"$report") warnings"
