#!/usr/bin/env bash
# Installs what is missing, builds, starts the bridge simulator with its default home on a free loopback port
# and shows glowdeckctl working against it. The simulator keeps running until Ctrl-C.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${GLOWDECK_BUILD_DIR:-$root/build}"

"$root/scripts/build.sh"

scratch="$(mktemp -d)"
export GLOWDECK_SETTINGS="$scratch/settings.json" # the demo never touches the user's own settings
key="glowdeck-demo-user"
"$build/tools/simulator/glowdeck-simulator" --port 0 --user "$key" >"$scratch/simulator.log" 2>&1 &
simulator=$!
trap 'kill $simulator 2>/dev/null; rm -rf "$scratch"' EXIT

for _ in $(seq 50); do
    address="$(sed -n 's/.*listening on \([0-9.]*:[0-9]*\).*/\1/p' "$scratch/simulator.log")"
    [ -n "$address" ] && break
    sleep 0.1
done
if [ -z "${address:-}" ]; then
    echo "The bridge simulator did not start:" >&2
    cat "$scratch/simulator.log" >&2
    exit 1
fi

ctl() {
    echo
    echo "\$ glowdeckctl $*"
    "$build/tools/glowdeckctl/glowdeckctl" --bridge "$address" --key "$key" "$@"
}

echo "Bridge simulator on $address"
ctl lights
ctl rooms
ctl scenes
first_room="$("$build/tools/glowdeckctl/glowdeckctl" --bridge "$address" --key "$key" rooms --json |
    sed -n 's/^\[{"group_id":"\([^"]*\)".*/\1/p')"
ctl room "$first_room" brightness 40
ctl rooms

echo
echo "The simulator stays up at $address (key $key); try for example:"
echo "  $build/tools/glowdeckctl/glowdeckctl --bridge $address --key $key all-off"
echo "Press Ctrl-C to stop it."
wait $simulator
