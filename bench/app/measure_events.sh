#!/usr/bin/env bash
# What the bridge's event stream saves the whole program, against the 200-light home (a glowdeck-simulator
# process of its own, over HTTPS): the latency of a change made by another app until the shared state holds it
# (bench_events, with the stream and with GLOWDECK_EVENT_STREAM=off), the program's CPU over idle minutes in
# both modes, and its resident memory over a long run with a change every second. The program runs in its
# window mode on a private Xvfb display (no tray needed); both idle runs and the memory run go side by side.
#
# Usage: measure_events.sh <build-dir> [idle seconds (600)] [memory seconds (1800)]
# Needs: Xvfb, curl, dbus-run-session.
set -u

build=${1:?usage: measure_events.sh <build-dir> [idle seconds] [memory seconds]}
idle_seconds=${2:-600}
memory_seconds=${3:-1800}
glowdeck="$build/src/app/glowdeck"
simulator="$build/tools/simulator/glowdeck-simulator"
refresh_bench="$build/bench/app/bench_refresh"
events_bench="$build/bench/app/bench_events"
for program in "$glowdeck" "$simulator" "$refresh_bench" "$events_bench"; do
    [ -x "$program" ] || {
        echo "measure_events: $program is missing; build glowdeck, bench_refresh and bench_events" >&2
        exit 1
    }
done
if [ -z "${GLOWDECK_MEASURE_IN_SESSION:-}" ]; then
    export GLOWDECK_MEASURE_IN_SESSION=1
    exec dbus-run-session -- bash "$0" "$@"
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/glowdeck-events.XXXXXX") || exit 1
pids=()
cleanup() {
    local pid
    for pid in "${pids[@]}"; do
        kill "$pid" 2>/dev/null
    done
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 1' INT TERM
export XDG_RUNTIME_DIR="$work/runtime" XDG_CONFIG_HOME="$work/config" XDG_CACHE_HOME="$work/cache"
mkdir -p "$XDG_RUNTIME_DIR" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME"
chmod 0700 "$XDG_RUNTIME_DIR"
unset http_proxy https_proxy all_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY no_proxy NO_PROXY
export QT_QPA_PLATFORM=xcb GLOWDECK_DISCOVERY_URL= GLOWDECK_MDNS_SERVICE= GLOWDECK_ARP_COMMAND= GLOWDECK_ERROR_ENDPOINT=

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 100); do
    [ -s "$work/display" ] && break
    sleep 0.1
done
export DISPLAY=":$(tr -dc 0-9 <"$work/display")"
"$refresh_bench" --lights 200 --save-home "$work/home200.json" || exit 1

# ---- 1. Latency of a change made elsewhere ------------------------------------------------------------------------
"$events_bench" --simulator "$simulator" --lights 200 --changes 200
GLOWDECK_EVENT_STREAM=off "$events_bench" --simulator "$simulator" --lights 200 --changes 200

# ---- 2. and 3. The whole program: idle CPU in both modes, memory with a change every second -----------------------
# Usage: start_run NAME [environment assignments...]; sets ${NAME}_pid, ${NAME}_http and ${NAME}_key.
start_run() {
    local name=$1 out="$work/$1-bridge.out" address id http
    shift
    "$simulator" --port 0 --tls-port 0 --write-authority "$work/$name.pem" --user "${name}key0123456789" \
        --home "$work/home200.json" --verbose >"$out" 2>&1 &
    pids+=($!)
    for _ in $(seq 100); do
        grep -q 'listening for HTTPS on' "$out" && break
        sleep 0.1
    done
    address=$(grep -o 'listening for HTTPS on 127\.0\.0\.1:[0-9]*' "$out" | sed 's/.* on //')
    http=$(grep -o 'listening on 127\.0\.0\.1:[0-9]*' "$out" | sed 's/.* on //')
    id=$(grep -o '(bridge [0-9A-F]*)' "$out" | tr -d '()' | cut -d' ' -f2)
    [ -n "$address" ] || {
        echo "measure_events: the simulator did not start: $(cat "$out")" >&2
        exit 1
    }
    printf '{"bridgeIP":"%s","bridgeTransport":"https","bridgeID":"%s","bridgeUser":"%s","hasSeenWelcomeScreen":true}\n' \
        "$address" "$id" "${name}key0123456789" >"$work/$name.json"
    chmod 0600 "$work/$name.json"
    env "$@" "$glowdeck" --window --settings "$work/$name.json" --trust-root "$work/$name.pem" \
        >"$work/$name-app.out" 2>&1 &
    pids+=($!)
    printf -v "${name}_pid" %s "$!"
    printf -v "${name}_http" %s "$http"
}
cpu_ns() { cat /proc/"$1"/task/*/schedstat 2>/dev/null | awk '{ s += $1 } END { print s }'; }
rss_kb() { grep VmRSS "/proc/$1/status" 2>/dev/null | tr -dc 0-9; }
reads() { grep -cE "^GET /api/[A-Za-z0-9]+/lights " "$work/$1-bridge.out"; }

start_run stream
start_run polling GLOWDECK_EVENT_STREAM=off
start_run memory
sleep 60 # started, read, settled
stream_cpu=$(cpu_ns "$stream_pid") polling_cpu=$(cpu_ns "$polling_pid")
stream_reads=$(reads stream) polling_reads=$(reads polling)
memory_start=$(rss_kb "$memory_pid")
started=$(date +%s)
change=0
while [ $(($(date +%s) - started)) -lt "$memory_seconds" ]; do
    # Another app changes one lamp after another, once a second.
    curl -s --noproxy '*' --max-time 2 -X POST -d "{\"bri\":$((change % 200 + 20))}" \
        "http://$memory_http/__control/external/lights/$((change % 200 + 1))/state" >/dev/null
    change=$((change + 1))
    if [ $(($(date +%s) - started)) -ge "$idle_seconds" ] && [ -z "${stream_idle:-}" ]; then
        stream_idle=$(($(cpu_ns "$stream_pid") - stream_cpu)) polling_idle=$(($(cpu_ns "$polling_pid") - polling_cpu))
        stream_reads=$(($(reads stream) - stream_reads)) polling_reads=$(($(reads polling) - polling_reads))
        echo "idle ${idle_seconds} s, the whole program's CPU: event stream $((stream_idle / 1000000)) ms" \
            "($stream_reads light reads), reading every 3.5 s $((polling_idle / 1000000)) ms ($polling_reads light reads)"
    fi
    if [ $(($(date +%s) - started)) -eq 300 ]; then memory_5min=$(rss_kb "$memory_pid"); fi
    sleep 1
done
memory_end=$(rss_kb "$memory_pid")
echo "memory with a change every second for ${memory_seconds} s ($change changes, $(reads memory) light reads):" \
    "VmRSS $memory_start kB after 60 s, ${memory_5min:-?} kB after 5 min, $memory_end kB at the end"
