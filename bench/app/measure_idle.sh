#!/usr/bin/env bash
# The whole program idle beside the 200-light home with the event stream open, once over the bridge's current
# interface (v2) and once over its first one (the simulator started with --no-v2), side by side: CPU of all its
# threads, wakeups per second (voluntary and involuntary context switches of all its threads) and the requests
# it sent, counted from the simulator's log.
#
# Usage: measure_idle.sh <build-dir> [idle seconds (600)]
# Needs: Xvfb, trayer, dbus-run-session.
set -u
. "$(dirname "$0")/measure_lib.sh"
measure_private_session "$@"
build=${1:?usage: measure_idle.sh <build-dir> [idle seconds]}
idle_seconds=${2:-600}
glowdeck="$build/src/app/glowdeck"
simulator="$build/tools/simulator/glowdeck-simulator"
for program in "$glowdeck" "$simulator" "$build/bench/app/bench_refresh"; do
    [ -x "$program" ] || {
        echo "measure_idle: $program is missing; build glowdeck, glowdeck-simulator and bench_refresh" >&2
        exit 1
    }
done
measure_prepare idle
measure_start_desktop
"$build/bench/app/bench_refresh" --lights 200 --save-home "$work/home200.json" >/dev/null || exit 1

# Usage: start_run NAME [simulator options]; sets ${NAME}_pid.
start_run() {
    local name=$1
    shift
    start_bridge "$work/$name.out" "$work/$name.json" "${name}key0123456789" --home "$work/home200.json" "$@"
    "$glowdeck" --window --settings "$work/$name.json" --trust-root "$work/$name.pem" >"$work/$name-app.out" 2>&1 &
    pids+=($!)
    printf -v "${name}_pid" %s "$!"
}
cpu_ns() { cat /proc/"$1"/task/*/schedstat 2>/dev/null | awk '{ s += $1 } END { print s }'; }
switches() { cat /proc/"$1"/task/*/status 2>/dev/null | awk '/ctxt_switches/ { s += $2 } END { print s }'; }
requests() { grep -E '^(GET|PUT|POST|DELETE) /' "$work/$1.out" | sed -E 's#/api/[A-Za-z0-9]+#/api/<key>#'; }

start_run v2
start_run v1 --no-v2
sleep 60 # started, read, settled
for run in v2 v1; do
    pid_var=${run}_pid
    printf -v "${run}_cpu" %s "$(cpu_ns "${!pid_var}")"
    printf -v "${run}_switches" %s "$(switches "${!pid_var}")"
    printf -v "${run}_requests" %s "$(requests "$run" | wc -l)"
done
sleep "$idle_seconds"
for run in v2 v1; do
    pid_var=${run}_pid cpu_var=${run}_cpu switches_var=${run}_switches requests_var=${run}_requests
    cpu=$(($(cpu_ns "${!pid_var}") - ${!cpu_var}))
    woke=$(($(switches "${!pid_var}") - ${!switches_var}))
    sent=$(requests "$run" | tail -n +"$((${!requests_var} + 1))")
    echo "interface $run, idle $idle_seconds s: CPU $((cpu / 1000000)) ms," \
        "$(awk -v w="$woke" -v s="$idle_seconds" 'BEGIN { printf "%.2f", w / s }') wakeups/s," \
        "$(grep -c . <<<"$sent") requests ($(cut -d' ' -f1,2 <<<"$sent" | sort | uniq -c | sed 's/^ *//' | paste -sd ';'))"
done
