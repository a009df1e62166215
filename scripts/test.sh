#!/usr/bin/env bash
# Installs what is missing for the whole test suite (fuzz targets and package checks included), builds, and
# runs it.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${GLOWDECK_BUILD_DIR:-$root/build}"

"$root/scripts/install-deps.sh" test
"$root/scripts/build.sh"
# Tests talk to loopback only; the public bridge discovery service stays switched off.
export GLOWDECK_DISCOVERY_URL="" GLOWDECK_MDNS_SERVICE="" GLOWDECK_ARP_COMMAND=""
ctest --test-dir "$build" --output-on-failure --parallel 2 "$@"
