#!/usr/bin/env bash
# Glowdeck as a person sees it: the demo under Xvfb with a real XEmbed tray (trayer), the tray icon clicked,
# the drop-down window screenshotted, a brightness slider dragged, and the simulated bridge checked for the new
# brightness. Nothing here talks to anything but loopback: the demo's bridge is its own simulator on
# 127.0.0.1, every outside address of the program is switched off, and curl only ever asks 127.0.0.1.
#
# Usage: tray_e2e.sh <glowdeck> <artifact-dir>
# Exit codes: 0 passed, 1 failed, 77 skipped (a tool is missing).
set -u

glowdeck=${1:?usage: tray_e2e.sh <glowdeck> <artifact-dir>}
artifacts=${2:?usage: tray_e2e.sh <glowdeck> <artifact-dir>}

e2e_name=tray
. "$(dirname "${BASH_SOURCE[0]}")/lib/desktop.sh"

e2e_require_tools Xvfb trayer xdotool xwd dbus-run-session curl
e2e_private_session "$@"
e2e_prepare "$artifacts"
e2e_start_display
e2e_start_trayer
e2e_start_glowdeck "$glowdeck" --demo

demo_line=$(await_output 'Glowdeck demo: simulated Hue bridge at ' 150) ||
    fail "no \"Glowdeck demo: simulated Hue bridge at\" line within 15 s"
address=$(sed -E 's/.*simulated Hue bridge at ([0-9.:]+).*/\1/' <<<"$demo_line")
case "$address" in
127.0.0.1:[0-9]*) ;;
*) fail "the demo bridge is at \"$address\", not on 127.0.0.1" ;;
esac
key_line=$(await_output 'Connecting to Bridge\.\.\. \[[^]]+\]' 300) ||
    fail "no \"Connecting to Bridge... [KEY]\" line within 30 s"
key=$(sed -E 's/.*Connecting to Bridge\.\.\. \[([^]]+)\].*/\1/' <<<"$key_line")
trace_line=$(await_output 'tray icon shown after [0-9]+ ms' 50) && say "${trace_line#*: }"
say "bridge $address, key $key"

# ---- The simulated bridge, over loopback ------------------------------------------------------------------------
# Prints "id bri" per light that has a brightness, in the bridge's order.
light_brightness() {
    local id bri
    for id in $light_ids; do
        bri=$(curl -s --noproxy '*' --max-time 2 "http://$address/api/$key/lights/$id" |
            grep -o '"bri": *[0-9]*' | head -n1 | tr -dc 0-9)
        [ -n "$bri" ] && echo "$id $bri"
    done
}
lights_json=$(curl -s --noproxy '*' --max-time 5 "http://$address/api/$key/lights") ||
    fail "the simulated bridge at $address does not answer"
# Light ids are numbers, and only they are numeric member names holding an object ("12":{...).
light_ids=$(grep -oE '[{,] *"[0-9]+": *\{' <<<"$lights_json" | tr -dc '0-9\n')
[ -n "$light_ids" ] || fail "the simulated bridge lists no lights: $lights_json"
initial=$(light_brightness)
say "initial brightness (id bri): $(tr '\n' ' ' <<<"$initial")"

# ---- Windows -----------------------------------------------------------------------------------------------------
# The drop-down window: about 200 px wide and not one of the windows that were open before the first click.
welcome_ids=""
dropdown_window() {
    top_windows | awk -v skip=" $welcome_ids " \
        'index(skip, " " $1 " ") == 0 && $4 >= 150 && $4 <= 320 && $5 >= 60 { print; exit }'
}
await_dropdown() {
    local found
    for _ in $(seq "$1"); do
        found=$(dropdown_window)
        [ -n "$found" ] && {
            echo "$found"
            return 0
        }
        sleep 0.1
    done
    return 1
}

# The welcome window of a first start: whatever the program shows by itself before the tray icon is clicked.
# Its default button ("Let's go!", which also opens the drop-down window) takes Return; a dialog closes on
# Escape.
for _ in $(seq 30); do
    welcome_ids=$(top_windows | awk '{ print $1 }' | tr '\n' ' ')
    [ -n "$welcome_ids" ] && break
    sleep 0.1
done
screenshot welcome
for welcome_id in $welcome_ids; do
    say "welcome window \"$(xdotool getwindowname "$welcome_id" 2>/dev/null)\": pressing Return"
    for key_name in Return Escape; do
        xdotool windowfocus --sync "$welcome_id" 2>/dev/null || xdotool windowfocus "$welcome_id" 2>/dev/null
        xdotool key "$key_name"
        for _ in $(seq 20); do
            top_windows | grep -q "^$welcome_id " || break 2
            sleep 0.1
        done
    done
    top_windows | grep -q "^$welcome_id " && say "the welcome window stays open; going on beside it"
done

# The tray icon: the program's small window inside trayer's panel; else the middle of the panel.
tray_icon_centre() {
    local id
    for id in $(xdotool search --onlyvisible --pid "$glowdeck_pid" 2>/dev/null); do
        (
            eval "$(xdotool getwindowgeometry --shell "$id" 2>/dev/null)"
            [ -n "${WIDTH:-}" ] && [ "$WIDTH" -le 48 ] && [ "$HEIGHT" -le 48 ] && [ "$Y" -lt 30 ] &&
                echo "$((X + WIDTH / 2)) $((Y + HEIGHT / 2))"
        )
    done | head -n1
}
open_dropdown() {
    local found centre
    found=$(dropdown_window)
    [ -n "$found" ] && {
        echo "$found"
        return 0
    }
    for _ in 1 2 3; do
        centre=$(tray_icon_centre)
        if [ -z "$centre" ]; then
            local panel
            panel=$(xdotool search --onlyvisible --class trayer | head -n1)
            centre=$(
                eval "$(xdotool getwindowgeometry --shell "$panel")"
                echo "$((X + WIDTH / 2)) $((Y + HEIGHT / 2))"
            )
        fi
        xdotool mousemove $centre click 1
        found=$(await_dropdown 30) && {
            echo "$found"
            return 0
        }
    done
    return 1
}

dropdown=$(open_dropdown) || fail "clicking the tray icon did not open a drop-down window about 200 px wide"
read -r win_id win_x win_y win_w win_h <<<"$dropdown"
say "drop-down window ${win_w}x${win_h} at ($win_x,$win_y)"
sleep 0.5 # let it fade in and lay out before the picture
screenshot dropdown

# ---- Drag a brightness slider from 10 % to 90 % of the width -----------------------------------------------------
changed=""
x_from=$((win_x + win_w / 10))
x_to=$((win_x + win_w * 9 / 10))
for dy in $(seq 60 6 200); do
    [ "$dy" -ge "$((win_h - 4))" ] && break
    dropdown=$(open_dropdown) || fail "the drop-down window closed and does not open again"
    read -r win_id win_x win_y win_w win_h <<<"$dropdown"
    y=$((win_y + dy))
    before=$(light_brightness)
    xdotool mousemove "$x_from" "$y" mousedown 1
    for step in 1 2 3 4 5 6 7 8; do
        xdotool mousemove "$((x_from + (x_to - x_from) * step / 8))" "$y"
        sleep 0.03
    done
    xdotool mouseup 1
    # The action queue sends within 0.3 to 0.6 s.
    for _ in $(seq 20); do
        sleep 0.1
        after=$(light_brightness)
        changed=$(awk 'NR == FNR { was[$1] = $2; next } ($1 in was) && was[$1] != $2 { print $1, was[$1], $2; exit }' \
            <(echo "$before") <(echo "$after"))
        [ -n "$changed" ] && break
    done
    [ -n "$changed" ] && break
done
screenshot after-drag

[ -n "$changed" ] || fail "dragging at every height from 60 to 200 px changed no light's brightness"
read -r light_id bri_before bri_after <<<"$changed"
say "dragging at y=$dy px in the window set light $light_id from bri $bri_before to $bri_after"
[ "$bri_after" -ge 200 ] || fail "light $light_id has bri $bri_after after a drag to 90 %, expected 200 or more"
kill -0 "$glowdeck_pid" 2>/dev/null || fail "glowdeck quit during the test"
say "PASS"
exit 0
