#!/usr/bin/env bash
# Installs what is missing, builds, and starts Glowdeck against its built-in simulated bridge: a lamp icon in
# the tray with a dozen simulated lights, rooms and scenes. Nothing leaves this machine. Without a desktop
# session, scripts/ctl-demo.sh shows the same bridge from the command line.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${GLOWDECK_BUILD_DIR:-$root/build}"

"$root/scripts/build.sh"
exec "$build/src/app/glowdeck" --demo "$@"
