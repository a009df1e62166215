# What the scripts that measure the whole program share; sourced, not run. Each script calls
# measure_private_session "$@" first (it runs again on a private session bus, so the tray is trayer's and not a
# desktop's StatusNotifierWatcher), then measure_prepare NAME: a work folder that goes at exit with every
# process listed in $pids, private XDG folders, no proxy, and every outside address of the program switched off.

measure_private_session() {
    if [ -z "${GLOWDECK_MEASURE_IN_SESSION:-}" ]; then
        export GLOWDECK_MEASURE_IN_SESSION=1
        exec dbus-run-session -- bash "$0" "$@"
    fi
}

# Ends the process: TERM, two seconds' grace, then KILL.
stop() {
    local pid=$1
    kill "$pid" 2>/dev/null
    for _ in $(seq 20); do
        kill -0 "$pid" 2>/dev/null || break
        sleep 0.1
    done
    kill -9 "$pid" 2>/dev/null
    wait "$pid" 2>/dev/null
}

measure_cleanup() {
    local pid
    for pid in "${pids[@]}"; do
        stop "$pid"
    done
    rm -rf "$work"
}

measure_prepare() {
    work=$(mktemp -d "${TMPDIR:-/tmp}/glowdeck-$1.XXXXXX") || exit 1
    pids=()
    trap measure_cleanup EXIT
    trap 'exit 1' INT TERM
    export XDG_RUNTIME_DIR="$work/runtime" XDG_CONFIG_HOME="$work/config" XDG_CACHE_HOME="$work/cache"
    mkdir -p "$XDG_RUNTIME_DIR" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME"
    chmod 0700 "$XDG_RUNTIME_DIR"
    unset http_proxy https_proxy all_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY no_proxy NO_PROXY GLOWDECK_SETTINGS
    # The simulator's and the program's lines read here are the English ones.
    export LC_ALL=C.UTF-8 LANGUAGE=
    export QT_QPA_PLATFORM=xcb GLOWDECK_DISCOVERY_URL= GLOWDECK_MDNS_SERVICE= GLOWDECK_ARP_COMMAND= \
        GLOWDECK_ERROR_ENDPOINT= GLOWDECK_HELP_URL= GLOWDECK_FEEDBACK_URL= GLOWDECK_REVIEW_URL= \
        GLOWDECK_WEBSITE_URL= GLOWDECK_DONATION_URL=
}

# A private X display with trayer as the tray, both ended at exit.
measure_start_desktop() {
    Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" >/dev/null 2>&1 &
    pids+=($!)
    for _ in $(seq 100); do
        [ -s "$work/display" ] && break
        sleep 0.1
    done
    export DISPLAY=":$(tr -dc 0-9 <"$work/display")"
    trayer --edge top --align right --widthtype request --height 24 >/dev/null 2>&1 &
    pids+=($!)
    for _ in $(seq 100); do
        xdotool search --onlyvisible --class trayer >/dev/null 2>&1 && break
        sleep 0.1
    done
}

# A bridge as sold today: HTTPS only, its certificate signed by an authority of its own, written beside OUT as
# OUT's name with .pem (for the program's --trust-root). Usage: start_bridge OUT SETTINGS KEY [simulator options];
# writes the settings of a program paired with it. Needs $simulator.
start_bridge() {
    local out=$1 settings=$2 bridge_key=$3 address id
    shift 3
    "$simulator" --no-http --tls-port 0 --write-authority "${out%.out}.pem" --user "$bridge_key" --verbose \
        "$@" >"$out" 2>&1 &
    pids+=($!)
    for _ in $(seq 100); do
        grep -q 'listening for HTTPS on' "$out" && break
        sleep 0.1
    done
    address=$(grep -o 'listening for HTTPS on 127\.0\.0\.1:[0-9]*' "$out" | sed 's/.* on //')
    id=$(grep -o '(bridge [0-9A-F]*)' "$out" | tr -d '()' | cut -d' ' -f2)
    [ -n "$address" ] || {
        echo "$(basename "$0"): the simulator did not start: $(cat "$out")" >&2
        exit 1
    }
    printf '{"bridgeIP":"%s","bridgeTransport":"https","bridgeID":"%s","bridgeUser":"%s","hasSeenWelcomeScreen":true}\n' \
        "$address" "$id" "$bridge_key" >"$settings"
    chmod 0600 "$settings"
}

median() { sort -n | awk '{ v[NR] = $1 } END { if (NR % 2) print v[(NR + 1) / 2]; else print (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
now_ms() { date +%s%3N; }

# Usage: measure_startup OUT LABEL PROGRAM [ARGUMENTS]: starts the program with its start-up traced (output in
# OUT) and ends it once it says its tray icon shows. Sets $trace (the program's own figure, ms) and $wall (exec
# to that line, polled every 5 ms); a program that never says so ends the script with its output.
measure_startup() {
    local out=$1 label=$2 start pid
    shift 2
    start=$(now_ms)
    GLOWDECK_TRACE_STARTUP=1 "$@" >"$out" 2>&1 &
    pid=$!
    pids+=("$pid")
    wall=""
    for _ in $(seq 1000); do
        if grep -q 'tray icon shown after' "$out"; then
            wall=$(($(now_ms) - start))
            break
        fi
        kill -0 "$pid" 2>/dev/null || break
        sleep 0.005
    done
    trace=$(grep -o 'tray icon shown after [0-9]*' "$out" | tr -dc 0-9)
    stop "$pid"
    if [ -z "$trace" ]; then
        echo "$label printed no \"tray icon shown after N ms\" line:" >&2
        cat "$out" >&2
        exit 1
    fi
}
