#!/usr/bin/env bash
# Installs what building and running the demos need, when missing, then configures and builds everything
# into build/ (or $GLOWDECK_BUILD_DIR).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${GLOWDECK_BUILD_DIR:-$root/build}"

"$root/scripts/install-deps.sh" demo
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" --parallel "$(nproc)"
