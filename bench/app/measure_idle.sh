#!/usr/bin/env bash
# The whole program idle beside the 200-light home with the event stream open, once over the bridge's current
# interface (v2) and once over its first one (the simulator started with --no-v2), side by side: CPU of all its
# threads, wakeups per second (voluntary and involuntary context switches of all its threads) and the requests
# it sent, counted from the simulator's log.
#
# Usage: measure_idle.sh <build-dir> [idle seconds (600)]
# Needs: Xvfb, dbus-run-session.
set -u

build=${1:?usage: measure_idle.sh <build-dir> [idle seconds]}
idle_seconds=${2:-600}
glowdeck="$build/src/app/glowdeck"
simulator="$build/tools/simulator/glowdeck-simulator"
refresh_bench="$build/bench/app/bench_refresh"
for program in "$glowdeck" "$simulator" "$refresh_bench"; do
    [ -x "$program" ] || {
        echo "measure_idle: $program is missing; build glowdeck, glowdeck-simulator and bench_refresh" >&2
        exit 1
    }
done
if [ -z "${GLOWDECK_MEASURE_IN_SESSION:-}" ]; then
    export GLOWDECK_MEASURE_IN_SESSION=1
    exec dbus-run-session -- bash "$0" "$@"
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/glowdeck-idle.XXXXXX") || exit 1
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
"$refresh_bench" --lights 200 --save-home "$work/home200.json" >/dev/null || exit 1

# Usage: start_run NAME [simulator options...]; sets ${NAME}_pid.
start_run() {
    local name=$1 out="$work/$1-bridge.out" address id
    shift
    "$simulator" --port 0 --tls-port 0 --write-authority "$work/$name.pem" --user "${name}key0123456789" \
        --home "$work/home200.json" --verbose "$@" >"$out" 2>&1 &
    pids+=($!)
    for _ in $(seq 100); do
        grep -q 'listening for HTTPS on' "$out" && break
        sleep 0.1
    done
    address=$(grep -o 'listening for HTTPS on 127\.0\.0\.1:[0-9]*' "$out" | sed 's/.* on //')
    id=$(grep -o '(bridge [0-9A-F]*)' "$out" | tr -d '()' | cut -d' ' -f2)
    [ -n "$address" ] || {
        echo "measure_idle: the simulator did not start: $(cat "$out")" >&2
        exit 1
    }
    printf '{"bridgeIP":"%s","bridgeTransport":"https","bridgeID":"%s","bridgeUser":"%s","hasSeenWelcomeScreen":true}\n' \
        "$address" "$id" "${name}key0123456789" >"$work/$name.json"
    chmod 0600 "$work/$name.json"
    "$glowdeck" --window --settings "$work/$name.json" --trust-root "$work/$name.pem" >"$work/$name-app.out" 2>&1 &
    pids+=($!)
    printf -v "${name}_pid" %s "$!"
}
cpu_ns() { cat /proc/"$1"/task/*/schedstat 2>/dev/null | awk '{ s += $1 } END { print s }'; }
switches() { cat /proc/"$1"/task/*/status 2>/dev/null | awk '/ctxt_switches/ { s += $2 } END { print s }'; }
requests() { grep -cE '^(GET|PUT|POST|DELETE) /' "$work/$1-bridge.out"; }
request_kinds() { grep -oE '^(GET|PUT|POST|DELETE) /[^ ?]*' "$work/$1-bridge.out" | sed -E 's#/api/[A-Za-z0-9]+#/api/<key>#; s#/[0-9a-f-]{36}#/<id>#' | sort | uniq -c | sort -rn | head -5 | tr '\n' ';'; }

start_run v2
start_run v1 --no-v2
sleep 60 # started, read, settled
for run in v2 v1; do
    pid_var=${run}_pid
    printf -v "${run}_cpu" %s "$(cpu_ns "${!pid_var}")"
    printf -v "${run}_switches" %s "$(switches "${!pid_var}")"
    printf -v "${run}_requests" %s "$(requests "$run")"
done
v2_seen=$(wc -l <"$work/v2-bridge.out") v1_seen=$(wc -l <"$work/v1-bridge.out")
sleep "$idle_seconds"
for run in v2 v1; do
    pid_var=${run}_pid cpu_var=${run}_cpu switches_var=${run}_switches requests_var=${run}_requests
    cpu=$(($(cpu_ns "${!pid_var}") - ${!cpu_var}))
    woke=$(($(switches "${!pid_var}") - ${!switches_var}))
    sent=$(($(requests "$run") - ${!requests_var}))
    seen_var=${run}_seen
    tail -n +"$((${!seen_var} + 1))" "$work/$run-bridge.out" >"$work/$run-idle.out"
    echo "interface $run, idle $idle_seconds s: CPU $((cpu / 1000000)) ms," \
        "$(awk -v w="$woke" -v s="$idle_seconds" 'BEGIN { printf "%.2f", w / s }') wakeups/s, $sent requests" \
        "($(grep -oE '^(GET|PUT|POST|DELETE) /[^ ?]*' "$work/$run-idle.out" | sed -E 's#/api/[A-Za-z0-9]+#/api/<key>#' | sort | uniq -c | tr -s ' ' | tr '\n' ';'))"
done
