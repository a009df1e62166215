#!/usr/bin/env bash
# The desktop entry and the AppStream metadata as desktops and software centres read them: no errors and no
# warnings from desktop-file-validate and appstreamcli (which looks at nothing on the network here).
#
# Usage: validate_metadata.sh <desktop entry> <metainfo file>
set -u
test_name=metadata
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
desktop=${1:?usage: validate_metadata.sh <desktop entry> <metainfo file>}
metainfo=${2:?usage: validate_metadata.sh <desktop entry> <metainfo file>}
require_tools desktop-file-validate appstreamcli

# desktop-file-validate prints nothing for a clean entry; hints are advice, everything else counts.
found=$(desktop-file-validate "$desktop" 2>&1 | grep -v ': hint: ')
[ -z "$found" ] || fail "desktop-file-validate $desktop:"$'\n'"$found"

# Errors fail the validation; warnings are reported on lines of their own ("W: ...").
report=$(appstreamcli validate --no-net --no-color "$metainfo" 2>&1)
status=$?
[ "$status" -eq 0 ] || fail "appstreamcli validate $metainfo (exit $status):"$'\n'"$report"
grep -q '^W:' <<<"$report" && fail "appstreamcli validate $metainfo warns:"$'\n'"$report"

# The metadata and the desktop entry name each other.
id=$(basename "$desktop" .desktop)
grep -q "<launchable type=\"desktop-id\">$id.desktop</launchable>" "$metainfo" ||
    fail "$metainfo does not launch $id.desktop"
grep -qx "Icon=$id" "$desktop" || fail "$desktop does not use the icon $id"
say "PASS"
