#!/usr/bin/env bash
# The whole program with one bridge and with two: start-up to tray icon shown, CPU of an idle minute and
# resident memory, each bridge with the 200-light home; then the time of a change on bridge B while bridge A
# answers every change with 429 (glowdeck-simulator --busy-for), against B's usual time.
#
# The bridges are glowdeck-simulator processes of their own (their memory and CPU are not counted), over
# HTTPS only for the program, as the bridge sold today. The program reads its bridges from "bridges" in a
# settings file the script writes: one entry, then two (one key each). Everything runs on a private Xvfb
# display with trayer as the tray; every outside address of the program is switched off.
#
# A program that serves the first stored bridge only reads nothing from the second: the idle run says so
# (no light read of bridge B) rather than pass it off as a figure of two bridges.
#
# The change on B is `glowdeckctl --settings FILE --bridge-id B light 1 off|on` from the same two-entry
# settings file, timed from exec to exit right after a write to A made A busy (each round on fresh
# bridges, so that A's spell starts with that write), and the same command with A at rest. A glowdeckctl
# without --bridge-id reaches B by its address and key instead (--bridge, --key): A cannot matter to it,
# so that figure only shows the measurement works, and the script says so.
#
# Usage: measure_bridges.sh <build-dir> [start-up runs (10)] [idle seconds (300)] [busy rounds (10)]
# Needs: Xvfb, trayer, xdotool, curl, dbus-run-session (the packages of tests/e2e/tray_e2e.sh).
set -u

build=${1:?usage: measure_bridges.sh <build-dir> [start-up runs] [idle seconds] [busy rounds]}
runs=${2:-10}
idle_seconds=${3:-300}
rounds=${4:-10}
glowdeck="$build/src/app/glowdeck"
glowdeckctl="$build/tools/glowdeckctl/glowdeckctl"
simulator="$build/tools/simulator/glowdeck-simulator"
refresh_bench="$build/bench/app/bench_refresh"
for program in "$glowdeck" "$glowdeckctl" "$simulator" "$refresh_bench"; do
    [ -x "$program" ] || {
        echo "measure_bridges: $program is missing; build glowdeck, glowdeckctl, glowdeck-simulator and" \
            "bench_refresh" >&2
        exit 1
    }
done
for tool in Xvfb trayer xdotool curl dbus-run-session; do
    command -v "$tool" >/dev/null 2>&1 || {
        echo "measure_bridges: $tool is not installed" >&2
        exit 1
    }
done
for number in "$runs" "$idle_seconds" "$rounds"; do
    [[ "$number" =~ ^[1-9][0-9]*$ ]] || {
        echo "measure_bridges: runs, idle seconds and rounds are whole numbers above 0, not \"$number\"" >&2
        exit 1
    }
done

. "$(dirname "${BASH_SOURCE[0]}")/measure_lib.sh"
measure_private_session "$@"
measure_prepare bridges

measure_start_desktop
cpu_ns() { cat /proc/"$1"/task/*/schedstat 2>/dev/null | awk '{ s += $1 } END { print s }'; }
rss_kb() { grep VmRSS "/proc/$1/status" 2>/dev/null | tr -dc 0-9; }

"$refresh_bench" --lights 200 --save-home "$work/home200.json" >/dev/null || exit 1
id_a=001788FFFE0000A1
id_b=001788FFFE0000B2
# Every key is registered on both bridges; each entry of a settings file uses its own.
one_key=measureonekey0123456789
two_key_a=measuretwokeyA0123456789
two_key_b=measuretwokeyB0123456789

# Usage: start_bridges NAME [simulator options]: bridges A and B with the 200-light home each, in one
# simulator process; sets ${NAME}_a and ${NAME}_b (HTTPS host:port) and ${NAME}_plain_a (plain HTTP).
start_bridges() {
    local name=$1 out="$work/$1-bridges.out"
    shift
    "$simulator" --bridges 2 --bridge-id "$id_a" --bridge-id "$id_b" --port 0 --tls-port 0 \
        --home "$work/home200.json" --write-authority "$work/authority-$name.pem" --user "$one_key" \
        --user "$two_key_a" --user "$two_key_b" --verbose "$@" >"$out" 2>&1 &
    pids+=($!)
    for _ in $(seq 100); do
        [ "$(grep -c 'listening for HTTPS on' "$out" 2>/dev/null)" = 2 ] && break
        sleep 0.1
    done
    local https plain
    https=$(grep -o 'listening for HTTPS on 127\.0\.0\.1:[0-9]*' "$out" | sed 's/.* on //')
    plain=$(grep -o 'listening on 127\.0\.0\.1:[0-9]*' "$out" | sed 's/.* on //')
    [ "$(wc -w <<<"$https")" -eq 2 ] || {
        echo "measure_bridges: the simulator did not start: $(cat "$out")" >&2
        exit 1
    }
    printf -v "${name}_a" %s "$(sed -n 1p <<<"$https")"
    printf -v "${name}_b" %s "$(sed -n 2p <<<"$https")"
    printf -v "${name}_plain_a" %s "$(sed -n 1p <<<"$plain")"
    printf -v "${name}_pid" %s "${pids[-1]}"
}
# Usage: contact ID ADDRESS KEY: one entry of "bridges", as the program stores a paired bridge.
contact() {
    printf '{"id":"%s","address":"%s","key":"%s","transport":"https","certificate":"","name":"Bridge %s"}' \
        "$1" "$2" "$3" "${1: -2}"
}
# Usage: write_settings FILE ENTRY...: a settings file of a paired program whose welcome screen was seen.
write_settings() {
    local file=$1 entries
    shift
    entries=$(IFS=,; echo "$*")
    printf '{"bridges":[%s],"hasSeenWelcomeScreen":true}\n' "$entries" >"$file"
    chmod 0600 "$file"
}

start_bridges home
write_settings "$work/one.json" "$(contact "$id_a" "$home_a" "$one_key")"
write_settings "$work/two.json" "$(contact "$id_a" "$home_a" "$two_key_a")" "$(contact "$id_b" "$home_b" "$two_key_b")"

# ---- 1. Start-up to tray icon shown -----------------------------------------------------------------------------
# One bridge and two bridges in turn, so that both see the same machine; the settings files are copied
# fresh for every run, as the program may write back what it learnt.
declare -A traces walls
declare -A named=([one]="one bridge" [two]="two bridges")
for run in $(seq "$runs"); do
    for setup in one two; do
        cp "$work/$setup.json" "$work/startup.json"
        out="$work/startup-$setup-$run.out"
        measure_startup "$out" "measure_bridges: run $run (${named[$setup]})" "$glowdeck" \
            --settings "$work/startup.json" --trust-root "$work/authority-home.pem"
        traces[$setup]+="$trace "
        walls[$setup]+="$wall "
    done
done
for setup in one two; do
    echo "start-up, ${named[$setup]} ($runs runs): tray icon shown after" \
        "$(tr ' ' '\n' <<<"${traces[$setup]}" | grep . | median) ms (median, trace line; runs: ${traces[$setup]% });" \
        "exec to that line $(tr ' ' '\n' <<<"${walls[$setup]}" | grep . | median) ms (median, polled every 5 ms)"
done

# ---- 2. Idle CPU and resident memory ----------------------------------------------------------------------------
# Both programs side by side against the same two bridges, each with its own keys, so that the light reads
# of each program and bridge can be told apart in the simulator's log.
for setup in one two; do
    cp "$work/$setup.json" "$work/idle-$setup.json"
    "$glowdeck" --settings "$work/idle-$setup.json" --trust-root "$work/authority-home.pem" \
        >"$work/idle-$setup.out" 2>&1 &
    pids+=($!)
    printf -v "${setup}_pid" %s "$!"
done
# Usage: reads ID KEY: the light reads bridge ID logged for KEY.
reads() { grep -c "^\[$1\] GET /api/$2/lights " "$work/home-bridges.out"; }
sleep 60 # started, read both bridges, settled
cpu_one=$(cpu_ns "$one_pid") cpu_two=$(cpu_ns "$two_pid")
reads_one=$(reads "$id_a" "$one_key") reads_two_a=$(reads "$id_a" "$two_key_a") reads_two_b=$(reads "$id_b" "$two_key_b")
sleep "$idle_seconds"
for setup in one two; do
    pid_var=${setup}_pid
    [ -n "$(rss_kb "${!pid_var}")" ] || {
        echo "measure_bridges: glowdeck (${named[$setup]}) quit during the idle run:" >&2
        cat "$work/idle-$setup.out" >&2
        exit 1
    }
done
per_minute() { awk -v c="$1" -v s="$idle_seconds" 'BEGIN { printf "%.1f", c / 1e6 / s * 60 }'; }
echo "idle ${idle_seconds} s, one bridge: $(per_minute $(($(cpu_ns "$one_pid") - cpu_one))) ms CPU per minute," \
    "VmRSS $(rss_kb "$one_pid") kB; light reads of A $(($(reads "$id_a" "$one_key") - reads_one))"
reads_b=$(($(reads "$id_b" "$two_key_b") - reads_two_b))
echo "idle ${idle_seconds} s, two bridges: $(per_minute $(($(cpu_ns "$two_pid") - cpu_two))) ms CPU per minute," \
    "VmRSS $(rss_kb "$two_pid") kB; light reads of A $(($(reads "$id_a" "$two_key_a") - reads_two_a)), of B $reads_b"
if [ "$(reads "$id_b" "$two_key_b")" -eq 0 ]; then
    echo "measure_bridges: note: the program never read bridge B: it serves the first stored bridge only," \
        "so the two-bridge figures are those of one bridge" >&2
fi
stop "$one_pid"
stop "$two_pid"
stop "$home_pid"

# ---- 3. A change on bridge B while bridge A answers 429 ---------------------------------------------------------
busy_seconds=10
if "$glowdeckctl" --help 2>/dev/null | grep -q -- '--bridge-id'; then
    ctl_to_b() { "$glowdeckctl" --settings "$work/busy.json" --trust-root "$2" --bridge-id "$id_b" light 1 "$1"; }
    how="--bridge-id $id_b from the two-entry settings file"
else
    ctl_to_b() { "$glowdeckctl" --key "$two_key_b" --bridge "https://$busy_b" --trust-root "$2" light 1 "$1"; }
    how="--bridge and --key of B; without --bridge-id A cannot matter: the figure only checks the script"
    echo "measure_bridges: note: glowdeckctl has no --bridge-id yet; B is reached by its address" >&2
fi
# Usage: timed_change off|on AUTHORITY: B's lamp 1 switched by glowdeckctl; prints its milliseconds.
timed_change() {
    local start status
    start=$(now_ms)
    ctl_to_b "$1" "$2" >"$work/ctl.out" 2>&1
    status=$?
    [ "$status" -eq 0 ] || {
        echo "measure_bridges: glowdeckctl light 1 $1 failed ($status): $(cat "$work/ctl.out")" >&2
        exit 1
    }
    echo $(($(now_ms) - start))
}
# Usage: lamp_on HOST:PORT KEY: "true" or "false", B's or A's lamp 1 as the bridge holds it (plain HTTP).
lamp_on() {
    curl -s --noproxy '*' --max-time 5 "http://$1/api/$2/lights/1" | grep -o '"on":[a-z]*' | head -1 | cut -d: -f2
}
# Usage: change_a BODY: a change of A's lamp 2 over plain HTTP; prints the HTTP status.
change_a() {
    curl -s --noproxy '*' --max-time 5 -o /dev/null -w '%{http_code}' -X PUT -d "$1" \
        "http://$busy_plain_a/api/$two_key_a/lights/2/state"
}
usual=()
busy=()
for round in $(seq "$rounds"); do
    # Fresh bridges each round: A's spell starts with its first change, once.
    start_bridges busy --busy-for "$busy_seconds" --busy-for 0
    write_settings "$work/busy.json" "$(contact "$id_a" "$busy_a" "$two_key_a")" "$(contact "$id_b" "$busy_b" "$two_key_b")"
    plain_b=$(grep -o 'listening on 127\.0\.0\.1:[0-9]*' "$work/busy-bridges.out" | sed -n 2p | sed 's/.* on //')
    usual+=("$(timed_change off "$work/authority-busy.pem")")
    [ "$(lamp_on "$plain_b" "$two_key_b")" = false ] || {
        echo "measure_bridges: B's lamp 1 did not switch off" >&2
        exit 1
    }
    curl -s --noproxy '*' --max-time 5 -o /dev/null -X PUT -d '{"on":true}' \
        "http://$plain_b/api/$two_key_b/lights/1/state"
    [ "$(change_a '{"on":true}')" = 200 ] && [ "$(change_a '{"on":false}')" = 429 ] || {
        echo "measure_bridges: bridge A did not become busy" >&2
        exit 1
    }
    before_a=$(grep -c "^\[$id_a\] " "$work/busy-bridges.out")
    busy+=("$(timed_change off "$work/authority-busy.pem")")
    touched_a=$(($(grep -c "^\[$id_a\] " "$work/busy-bridges.out") - before_a))
    [ "$(lamp_on "$plain_b" "$two_key_b")" = false ] || {
        echo "measure_bridges: B's lamp 1 did not switch off while A was busy" >&2
        exit 1
    }
    [ "$(change_a '{"on":false}')" = 429 ] || echo "measure_bridges: note: A's spell ended before round" \
        "$round was over: the change on B took longer than $busy_seconds s" >&2
    [ "$touched_a" -eq 0 ] || echo "measure_bridges: note: round $round sent $touched_a requests to A" >&2
    stop "$busy_pid"
done
echo "a change of B's lamp 1 [$how], $rounds rounds: $(printf '%s\n' "${usual[@]}" | median) ms with A at rest" \
    "(median; runs: ${usual[*]}), $(printf '%s\n' "${busy[@]}" | median) ms right after a change made A answer 429" \
    "for ${busy_seconds} s (median; runs: ${busy[*]})"
