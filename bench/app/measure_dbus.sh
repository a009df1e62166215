#!/bin/bash
# All Off and All On called over D-Bus (gdbus, as a script or a key binding would) against the running program
# on a 149-light home: the requests the bridge receives for each call (one is the target) and the time from
# the call to that request. Runs on a private session bus, the program on the offscreen platform.
# Usage: measure_dbus.sh [BUILD_DIR] [RUNS]
set -u
. "$(dirname "$0")/measure_lib.sh"
measure_private_session "$@"
build=$(realpath "${1:-build}")
runs=${2:-5}
measure_prepare dbus
export QT_QPA_PLATFORM=offscreen
simulator="$build/tools/simulator/glowdeck-simulator"
glowdeck="$build/src/app/glowdeck"

"$build/bench/app/bench_refresh" --lights 149 --save-home "$work/home.json" >/dev/null || exit 1
key=measuredbuskey0123456789
start_bridge "$work/simulator.out" "$work/settings.json" "$key" --home "$work/home.json"
"$glowdeck" --settings "$work/settings.json" --trust-root "$work/simulator.pem" >"$work/glowdeck.out" 2>&1 &
pids+=($!)

call() {
    gdbus call --session --dest com.brambleworks.Glowdeck --object-path /com/brambleworks/Glowdeck \
        --method "com.brambleworks.Glowdeck.$1" "${@:2}"
}
count() { call ListLights 2>/dev/null | grep -o "'lamp_id'" | wc -l; }
for _ in $(seq 200); do
    [ "$(count)" -gt 0 ] && break
    sleep 0.1
done
lamps=$(count)
[ "$lamps" -gt 0 ] || {
    echo "measure_dbus: the program listed no lamps: $(cat "$work/glowdeck.out")" >&2
    exit 1
}

changes() { grep -cE '^(PUT|POST|DELETE) ' "$work/simulator.out"; }
# Usage: measure METHOD; prints "REQUESTS MILLISECONDS".
measure() {
    local before start sent=""
    before=$(changes)
    start=$(now_ms)
    call "$1" >/dev/null || exit 1
    for _ in $(seq 1000); do
        if [ "$(changes)" -gt "$before" ]; then
            sent=$(now_ms)
            break
        fi
        sleep 0.005
    done
    sleep 2 # anything more the call caused would be sent by now
    echo "$(($(changes) - before)) $((${sent:-0} - start))"
}
for _ in $(seq "$runs"); do
    measure AllOff >>"$work/off"
    measure AllOn >>"$work/on"
done
for method in off on; do
    requests=$(cut -d' ' -f1 "$work/$method" | sort -u | tr '\n' ' ')
    echo "All ${method^} over D-Bus, $lamps lamps listed: requests per call: ${requests}(target 1); call to request:" \
        "median $(cut -d' ' -f2 "$work/$method" | median) ms over $runs runs ($(cut -d' ' -f2 "$work/$method" | tr '\n' ' ' | sed 's/ $//') ms)"
done
