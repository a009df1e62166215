#!/usr/bin/env bash
# The tray application's figures: start-up to tray icon shown, resident memory after a minute of refreshing,
# CPU time per refresh tick, the drop-down window of the 200-light home (click to shown, the views' share of a
# tick) and a long run of that home with the window open and then closed (resident memory and the whole
# program's CPU per tick). Everything runs on a private Xvfb display with trayer as the tray and the simulated
# bridge on 127.0.0.1 over HTTPS; every outside address of the program is switched off.
#
# Usage: measure_app.sh <build-dir> [start-up runs (10)] [memory seconds (60)] [long-run seconds (600)]
# Needs: Xvfb, trayer, xdotool, dbus-run-session (the packages of tests/e2e/tray_e2e.sh).
set -u

build=${1:?usage: measure_app.sh <build-dir> [runs] [seconds]}
runs=${2:-10}
seconds=${3:-60}
long_seconds=${4:-600}
glowdeck="$build/src/app/glowdeck"
simulator="$build/tools/simulator/glowdeck-simulator"
bench="$build/bench/app/bench_refresh"
dropdown_bench="$build/bench/app/bench_dropdown"
for program in "$glowdeck" "$simulator" "$bench" "$dropdown_bench"; do
    [ -x "$program" ] || {
        echo "measure_app: $program is missing; build glowdeck, bench_refresh and bench_dropdown" >&2
        exit 1
    }
done
for tool in Xvfb trayer xdotool dbus-run-session; do
    command -v "$tool" >/dev/null 2>&1 || {
        echo "measure_app: $tool is not installed" >&2
        exit 1
    }
done

. "$(dirname "${BASH_SOURCE[0]}")/measure_lib.sh"
measure_private_session "$@"
measure_prepare measure

measure_start_desktop

# ---- 1. Start-up to tray icon shown ------------------------------------------------------------------------------
# Each run is a first start of the demo: its own simulated bridge and a fresh temporary settings file.
traces=()
walls=()
for run in $(seq "$runs"); do
    out="$work/startup-$run.out"
    measure_startup "$out" "measure_app: run $run" "$glowdeck" --demo
    traces+=("$trace")
    walls+=("$wall")
done
echo "start-up ($runs runs): tray icon shown after $(printf '%s\n' "${traces[@]}" | median) ms (median," \
    "trace line; runs: ${traces[*]}); exec to that line $(printf '%s\n' "${walls[@]}" | median) ms (median," \
    "polled every 5 ms; runs: ${walls[*]})"

# ---- 2. Resident memory after a minute of refreshing -------------------------------------------------------------
# The bridge runs as its own process so its memory is not counted.
key=measureappkey0123456789
start_bridge "$work/simulator.out" "$work/settings.json" "$key"
"$glowdeck" --settings "$work/settings.json" --trust-root "$work/simulator.pem" >"$work/memory.out" 2>&1 &
pid=$!
pids+=("$pid")
rss_at() { grep VmRSS "/proc/$pid/status" 2>/dev/null | tr -dc 0-9; }
sleep 5
rss_start=$(rss_at)
sleep "$((seconds - 5))"
rss_end=$(rss_at)
hwm=$(grep VmHWM "/proc/$pid/status" 2>/dev/null | tr -dc 0-9)
light_reads=$(grep -c "^GET /api/$key/lights " "$work/simulator.out")
if [ -z "$rss_end" ]; then
    echo "measure_app: glowdeck quit during the memory run:" >&2
    cat "$work/memory.out" >&2
    exit 1
fi
echo "memory after ${seconds} s of refreshing: VmRSS $((rss_end / 1024)) MB ($rss_end kB; $rss_start kB after 5 s," \
    "peak $hwm kB; $light_reads light reads)"
stop "$pid"

# ---- 3. CPU time per refresh tick ---------------------------------------------------------------------------------
"$bench" --simulator "$simulator" --ticks 300
"$bench" --simulator "$simulator" --ticks 300 --lights 200
"$bench" --simulator "$simulator" --ticks 300 --memory-store
"$bench" --simulator "$simulator" --ticks 300 --lights 200 --memory-store
"$bench" --simulator "$simulator" --ticks 300 --https
"$bench" --simulator "$simulator" --ticks 300 --lights 200 --https
"$bench" --simulator "$simulator" --ticks 20 --lights 200 --interval 3500
"$bench" --simulator "$simulator" --ticks 20 --lights 200 --interval 3500 --https

# ---- 4. The drop-down window of the 200-light home ----------------------------------------------------------------
"$dropdown_bench" --lights 200

# ---- 5. A long run of the 200-light home: window open, then closed ------------------------------------------------
# The whole program's CPU (utime + stime from /proc) per refresh tick and its resident memory, against a
# simulator process of its own.
"$bench" --lights 200 --save-home "$work/home200.json" || exit 1
large_key=measurelargekey0123456789
start_bridge "$work/large.out" "$work/large.json" "$large_key" --home "$work/home200.json"
GLOWDECK_TRACE_STARTUP=1 "$glowdeck" --settings "$work/large.json" --trust-root "$work/large.pem" \
    >"$work/large-app.out" 2>&1 &
pid=$!
pids+=("$pid")
for _ in $(seq 100); do
    grep -q 'tray icon shown after' "$work/large-app.out" && break
    sleep 0.1
done
sleep 3
# Nanoseconds on a CPU, all threads: the clock ticks of /proc/PID/stat (10 ms) are too coarse for a tick.
cpu_ns() { cat /proc/"$pid"/task/*/schedstat 2>/dev/null | awk '{ s += $1 } END { print s }'; }
light_reads() { grep -c "^GET /api/$large_key/lights " "$work/large.out"; }
dropdown_shown() {
    local id
    for id in $(xdotool search --onlyvisible --pid "$pid" 2>/dev/null); do
        xdotool getwindowgeometry "$id" 2>/dev/null | grep -q 'Geometry: 200x' && return 0
    done
    return 1
}
# Returns "RSS-at-start RSS-at-end CPU-ms-per-tick ticks" for a span of $1 seconds (after 30 s to settle).
measure_span() {
    local span=$1 rss0 rss1 cpu0 cpu1 reads0 reads1
    sleep 30
    rss0=$(rss_at)
    cpu0=$(cpu_ns)
    reads0=$(light_reads)
    sleep "$span"
    rss1=$(rss_at)
    cpu1=$(cpu_ns)
    reads1=$(light_reads)
    [ -n "$rss1" ] || return 1
    echo "$rss0 $rss1 $(awk -v c=$((cpu1 - cpu0)) -v t=$((reads1 - reads0)) \
        'BEGIN { printf "%.2f", t ? c / 1e6 / t : 0 }') $((reads1 - reads0))"
}
xdotool mousemove 1268 12 click 1
for _ in $(seq 30); do
    dropdown_shown && break
    sleep 0.1
done
dropdown_shown || {
    echo "measure_app: the drop-down window did not open for the long run" >&2
    exit 1
}
read -r rss_a rss_b cpu_open ticks_open <<<"$(measure_span "$long_seconds")" || {
    echo "measure_app: glowdeck quit during the long run:" >&2
    cat "$work/large-app.out" >&2
    exit 1
}
dropdown_shown || echo "measure_app: note: the window closed during the long run" >&2
echo "200-light home, window open, ${long_seconds} s: VmRSS $rss_a kB -> $rss_b kB ($((rss_b - rss_a)) kB)," \
    "$cpu_open ms CPU per tick for the whole program ($ticks_open ticks)"
xdotool mousemove 1268 12 click 1
closed_seconds=$((long_seconds / 4))
read -r rss_c rss_d cpu_closed ticks_closed <<<"$(measure_span "$closed_seconds")"
echo "200-light home, window closed, ${closed_seconds} s: VmRSS $rss_c kB -> $rss_d kB ($((rss_d - rss_c)) kB)," \
    "$cpu_closed ms CPU per tick for the whole program ($ticks_closed ticks)"
