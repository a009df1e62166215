#!/usr/bin/env bash
# What the preferences window costs: resident memory before and after it is first opened and after every pane
# was shown, and the time from choosing Settings in the tray icon's menu to the window on screen, the first
# time (the panes are built then) and the second. Runs on a private Xvfb display with trayer, against a
# glowdeck-simulator process on 127.0.0.1, already paired.
#
# Usage: measure_preferences.sh <build-dir>
# Needs: the packages of tests/e2e/tray_e2e.sh.
set -u

build=$(cd "${1:?usage: measure_preferences.sh <build-dir>}" && pwd)
e2e_name=measure_preferences
. "$(dirname "${BASH_SOURCE[0]}")/../../tests/e2e/lib/desktop.sh"
e2e_require_tools Xvfb trayer xdotool dbus-run-session
e2e_private_session "$@"
e2e_prepare "$build/measure-artifacts"
e2e_start_display
e2e_start_trayer

key=measurekey0123456789
e2e_background "$build/tools/simulator/glowdeck-simulator" --user "$key" >"$e2e_work/simulator.out" 2>&1
for _ in $(seq 50); do
    address=$(grep -oE '127\.0\.0\.1:[0-9]+' "$e2e_work/simulator.out")
    [ -n "$address" ] && break
    sleep 0.1
done
[ -n "$address" ] || fail "the simulator did not start"
printf '{"bridgeIP":"%s","bridgeUser":"%s","hasSeenWelcomeScreen":true}\n' "$address" "$key" >"$e2e_work/settings.json"
e2e_start_glowdeck "$build/src/app/glowdeck" --settings "$e2e_work/settings.json"
await_output 'tray icon shown' 50 >/dev/null || fail "glowdeck did not start"
sleep 3

rss() { grep VmRSS "/proc/$glowdeck_pid/status" | tr -dc 0-9; }
# Settings is the fifth entry of the menu; the window's title is its first pane's, "General".
open_settings() {
    local start
    xdotool mousemove 1268 12 click 3
    sleep 0.5
    start=$(date +%s%N)
    xdotool key Down Down Down Down Down Return
    until xdotool search --onlyvisible --name '^General$' >/dev/null 2>&1; do :; done
    echo $((($(date +%s%N) - start) / 1000000))
}

before=$(rss)
first=$(open_settings)
sleep 2
opened=$(rss)
for _ in 1 2 3 4; do
    xdotool key ctrl+Tab
    sleep 0.5
done
sleep 1
panes=$(rss)
xdotool key Escape
sleep 1
second=$(open_settings)
say "VmRSS ${before} kB before, ${opened} kB with the window open, ${panes} kB after every pane"
say "Settings to window shown: ${first} ms the first time, ${second} ms the second (six simulated key presses included)"
