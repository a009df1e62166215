#!/usr/bin/env bash
# Window mode without any tray: the time from exec to Glowdeck's window on screen, on a private X display with no
# XEmbed tray and a private session bus with no StatusNotifierWatcher, paired to a simulated bridge of the
# 149-lamp home of tests/e2e/lib/big_home.py. Then the drop-down window of that home under trayer's icon: how
# many lamps it shows at its default size (bench_dropdown counts the rows in view).
#
# Usage: measure_window.sh <build-dir> [runs (10)]
# Needs: Xvfb, trayer, xdotool, dbus-run-session, /usr/bin/python3.
set -u

build=${1:?usage: measure_window.sh <build-dir> [runs]}
runs=${2:-10}
glowdeck="$build/src/app/glowdeck"
simulator="$build/tools/simulator/glowdeck-simulator"
dropdown_bench="$build/bench/app/bench_dropdown"
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
for program in "$glowdeck" "$simulator" "$dropdown_bench"; do
    [ -x "$program" ] || {
        echo "measure_window: $program is missing; build glowdeck, glowdeck-simulator and bench_dropdown" >&2
        exit 1
    }
done

. "$here/measure_lib.sh"
measure_private_session "$@"
measure_prepare window

# A display without a tray: no trayer here.
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 100); do
    [ -s "$work/display" ] && break
    sleep 0.1
done
export DISPLAY=":$(tr -dc 0-9 <"$work/display")"

"$simulator" --save-home "$work/home.json" >/dev/null || exit 1
/usr/bin/python3 "$here/../../tests/e2e/lib/big_home.py" "$work/home.json" 149 || exit 1
key=measurewindowkey0123456789
"$simulator" --port 0 --user "$key" --home "$work/home.json" >"$work/bridge.out" 2>&1 &
pids+=($!)
for _ in $(seq 50); do
    grep -q 'listening on' "$work/bridge.out" && break
    sleep 0.1
done
address=$(grep -o 'listening on 127\.0\.0\.1:[0-9]*' "$work/bridge.out" | sed 's/listening on //')
[ -n "$address" ] || {
    echo "measure_window: the simulator did not start: $(cat "$work/bridge.out")" >&2
    exit 1
}

# ---- 1. Exec to the window, no tray anywhere ----------------------------------------------------------------------
traces=()
walls=()
for run in $(seq "$runs"); do
    printf '{"bridgeIP":"%s","bridgeUser":"%s","hasSeenWelcomeScreen":true,"hasExplainedWindowMode":true}\n' \
        "$address" "$key" >"$work/settings-$run.json"
    chmod 0600 "$work/settings-$run.json"
    out="$work/window-$run.out"
    start=$(now_ms)
    GLOWDECK_TRACE_STARTUP=1 "$glowdeck" --settings "$work/settings-$run.json" >"$out" 2>&1 &
    pid=$!
    pids+=("$pid")
    wall=""
    for _ in $(seq 2000); do
        if [ -n "$(xdotool search --onlyvisible --name '^Glowdeck$' 2>/dev/null)" ]; then
            wall=$(($(now_ms) - start))
            break
        fi
        kill -0 "$pid" 2>/dev/null || break
        sleep 0.005
    done
    trace=$(grep -o 'window shown after [0-9]*' "$out" | tr -dc 0-9)
    stop "$pid"
    [ -n "$wall" ] && [ -n "$trace" ] || {
        echo "measure_window: run $run showed no window:" >&2
        cat "$out" >&2
        exit 1
    }
    traces+=("$trace")
    walls+=("$wall")
done
echo "window mode without a tray ($runs runs): window shown after $(printf '%s\n' "${traces[@]}" | median) ms" \
    "(median, trace line; runs: ${traces[*]}); exec to the window on screen $(printf '%s\n' "${walls[@]}" | median)" \
    "ms (median, polled every 5 ms; runs: ${walls[*]})"

# ---- 2. Lamps in view in the default drop-down window of the 149-lamp home ----------------------------------------
"$dropdown_bench" --lights 149 --opens 3 --ticks 10 --home "$work/home.json"
