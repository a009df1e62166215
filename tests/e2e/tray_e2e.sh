#!/usr/bin/env bash
# Glowdeck as a new user meets it, under Xvfb with a real XEmbed tray (trayer) and the accessibility bus: a
# first start with empty settings against a simulated bridge that speaks HTTPS, as current bridges do, and whose
# link button is not pressed; the welcome window; Settings from the tray icon's menu; on the connection pane
# Manual, the bridge's address, Connect and the link-button message; the link button pressed; Connect again,
# "CONNECTED" and the bridge named as reached over HTTPS. Then every pane is looked
# at (a screenshot each, every control named for a screen reader; the tray menu, the App Icon list and the Debug
# Information window paint without a compositing manager), a light is hidden, start at login switched
# on, and the drop-down window lists the bridge's lights without the hidden one; a dragged brightness slider
# reaches the bridge. Last, "Off in 5 minutes" from the tray icon's menu leaves Glowdeck's named timer on the
# bridge and a way to cancel it in the menu, and once the bridge has gone the connection pane says it does not
# answer, and Connect keeps the stored key. Nothing here talks to anything but loopback: the simulator listens on 127.0.0.1, every
# outside address of the program is switched off, and curl only ever asks 127.0.0.1.
#
# Usage: tray_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>
# Exit codes: 0 passed, 1 failed, 77 skipped (a tool is missing).
set -u

usage="usage: tray_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>"
glowdeck=${1:?$usage}
simulator=${2:?$usage}
artifacts=${3:?$usage}

e2e_name=tray
. "$(dirname "${BASH_SOURCE[0]}")/lib/desktop.sh"

e2e_require_tools Xvfb trayer xdotool dbus-run-session curl
e2e_require_atspi
e2e_private_session "$@"
e2e_prepare "$artifacts"
e2e_start_display
e2e_start_trayer
e2e_start_atspi

# ---- The bridge: the simulator program over HTTPS, its link button not pressed -------------------------------
[ -x "$simulator" ] || fail "$simulator is not an executable"
# Starts a simulator with the given options; sets $address (plain HTTP, for curl) and $tls_address.
start_simulator() {
    local out="$e2e_work/simulator-$1.out"
    shift
    e2e_background "$simulator" --port 0 "$@" >"$out" 2>&1
    address="" tls_address=""
    for _ in $(seq 50); do
        address=$(grep -oE 'listening on 127\.0\.0\.1:[0-9]+' "$out" | cut -d' ' -f3)
        tls_address=$(grep -oE 'listening for HTTPS on 127\.0\.0\.1:[0-9]+' "$out" | cut -d' ' -f5)
        [ -n "$address" ] && { [ -n "$tls_address" ] || ! grep -q -- --tls-port <<<"$*"; } && break
        sleep 0.1
    done
    [ -n "$address" ] || fail "the simulator did not start: $(cat "$out")"
}
# Its authority, trusted by this run only: the bridge maker's would never sign a test bridge.
start_simulator signed --tls-port 0 --write-authority "$e2e_work/authority.pem" --verbose
[ -n "$tls_address" ] || fail "the simulator does not serve HTTPS: $(cat "$e2e_work/simulator-signed.out")"
say "simulated bridge at https://$tls_address (plain HTTP for the test's own curl at $address)"
simulator_says() { grep -q -- "$1" "$e2e_work/simulator-signed.out"; }

# ---- A first start with empty settings -----------------------------------------------------------------------
settings="$e2e_work/settings.json"
e2e_start_glowdeck "$glowdeck" --settings "$settings" --trust-root "$e2e_work/authority.pem"
trace_line=$(await_output 'tray icon shown after [0-9]+ ms' 50) && say "${trace_line#*: }"

# The stored key, read from the settings file (the program does not print it).
stored() {
    /usr/bin/python3 -c 'import json, sys
try:
    print(json.load(open(sys.argv[1])).get(sys.argv[2], ""))
except Exception:
    pass' "$settings" "$1"
}

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
click_tray_icon() {
    local centre panel
    centre=$(tray_icon_centre)
    if [ -z "$centre" ]; then
        panel=$(xdotool search --onlyvisible --class trayer | head -n1)
        centre=$(
            eval "$(xdotool getwindowgeometry --shell "$panel")"
            echo "$((X + WIDTH / 2)) $((Y + HEIGHT / 2))"
        )
    fi
    xdotool mousemove $centre click "$1"
}
# The drop-down window: about 200 px wide, not the preferences window.
dropdown_window() {
    top_windows | awk '$4 >= 150 && $4 <= 320 && $5 >= 60 { print; exit }'
}
open_dropdown() {
    local found
    for _ in 1 2 3; do
        found=$(dropdown_window)
        [ -n "$found" ] && {
            echo "$found"
            return 0
        }
        click_tray_icon 1
        for _ in $(seq 30); do
            found=$(dropdown_window)
            [ -n "$found" ] && {
                echo "$found"
                return 0
            }
            sleep 0.1
        done
    done
    return 1
}
# Clicks the middle of the left end of an object found through the accessibility interface (a list row's
# switch, a text field).
click_object() {
    local x y w h
    read -r x y w h < <(atspi where "$1" "$2") || fail "no $1 \"$2\" on screen"
    xdotool mousemove "$((x + ${3:-12}))" "$((y + h / 2))" click 1
}

atspi --timeout 10 wait "push button" "Let's go!" >/dev/null || fail "no welcome window with \"Let's go!\""
screenshot welcome
atspi press "push button" "Let's go!"
atspi --timeout 5 wait label "~not able to detect any lights" >/dev/null ||
    fail "\"Let's go!\" did not open the drop-down window with its \"no lights yet\" hint"
sleep 0.3 # let it fade in before the picture
screenshot dropdown-unpaired

# ---- Settings from the tray icon's menu, by keyboard: the fifth entry ---------------------------------------
open_settings() {
    local attempt
    for attempt in 1 2 3; do
        local before menu
        before=$(window_ids)
        click_tray_icon 3
        sleep 0.4
        # No compositing manager runs here: the menu paints all the same.
        menu=$(new_window $before) && expect_painted "$menu" "the tray icon's menu"
        xdotool key Down Down Down Down Down Return
        atspi --timeout 3 wait "page tab" Connection >/dev/null 2>&1 && return
    done
    fail "Settings in the tray icon's menu did not open the preferences window"
}
open_settings
# Not paired yet: the window starts on the connection pane.
atspi wait "page tab" Connection | grep -q selected || fail "the connection pane is not the one shown"
atspi --timeout 2 wait label "DISCONNECTED" >/dev/null || fail "the connection pane does not say DISCONNECTED"
screenshot pane-connection-unpaired

# ---- Pairing: Manual, the address, Connect; the link button; Connect again ---------------------------------
atspi press "radio button" Manual
atspi type text "IP address of your Hue bridge" "$tls_address"
atspi press "push button" Connect
atspi --timeout 10 wait label "Bridge responded: Press LINK BUTTON and retry" >/dev/null ||
    fail "Connect before the link button was pressed did not ask for it"
screenshot pane-connection-link-button
[ -z "$(stored bridgeUser)" ] || fail "a key was stored before the link button was pressed"

curl -s --noproxy '*' --max-time 5 -X POST "http://$address/__control/linkbutton" >/dev/null ||
    fail "the simulator's link button cannot be pressed"
simulator_says 'Link button pressed (POST /__control/linkbutton)' ||
    fail "the simulator did not say its link button was pressed"
# The second Connect by keyboard: Return in the address field.
click_object text "IP address of your Hue bridge" 40
xdotool key Return
atspi --timeout 15 wait label CONNECTED >/dev/null || fail "the status does not read CONNECTED after pairing"
for _ in $(seq 50); do
    key=$(stored bridgeUser)
    [ -n "$key" ] && break
    sleep 0.1
done
[ -n "$key" ] || fail "no key in the settings file after pairing"
[ "$(stored bridgeIP)" = "$tls_address" ] || fail "the settings file holds bridgeIP \"$(stored bridgeIP)\""
[ "$(stored bridgeTransport)" = https ] || fail "the bridge was not reached over HTTPS: \"$(stored bridgeTransport)\""
atspi --timeout 5 wait label "~over HTTPS .certificate signed by" >/dev/null ||
    fail "the connection pane does not say that the bridge is reached over HTTPS"
sleep 0.3
screenshot pane-connection
say "paired with $tls_address over HTTPS, bridge $(stored bridgeID)"

# ---- Every pane: a picture each, and no control without a name ----------------------------------------------
lights_json=$(curl -s --noproxy '*' --max-time 5 "http://$address/api/$key/lights") ||
    fail "the simulated bridge at $address does not answer"
# Light ids are numbers, and only they are numeric member names holding an object ("12":{...).
light_ids=$(grep -oE '[{,] *"[0-9]+": *\{' <<<"$lights_json" | tr -dc '0-9\n')
[ -n "$light_ids" ] || fail "the simulated bridge lists no lights: $lights_json"
light_name() { curl -s --noproxy '*' --max-time 2 "http://$address/api/$key/lights/$1" |
    /usr/bin/python3 -c 'import json, sys; print(json.load(sys.stdin)["name"])'; }
first_id=$(head -n1 <<<"$light_ids")
hidden_name=$(light_name "$first_id")
shown_name=$(light_name "$(sed -n 2p <<<"$light_ids")")

for pane in Connection General Lights Hotkeys; do
    atspi press "page tab" "$pane"
    atspi --timeout 3 wait "page tab" "$pane" | grep -q selected || fail "the $pane pane did not open"
    sleep 0.4 # the window's resize to the pane takes 0.25 s
    atspi audit "$pane" || fail "the $pane pane has controls without a name"
    case $pane in
    Lights)
        atspi --timeout 5 wait "list item" "$hidden_name" >/dev/null || fail "the lights pane does not list $hidden_name"
        # Its switch off: the light is no longer shown in the drop-down window.
        click_object "list item" "$hidden_name" 10
        for _ in $(seq 20); do
            grep -q '"hide_light_[^"]*": true' "$settings" && break
            sleep 0.1
        done
        grep -q '"hide_light_[^"]*": true' "$settings" || fail "switching $hidden_name off stored no hide_light_ flag"
        ;;
    General)
        atspi press "check box" "Run at start"
        entry="$XDG_CONFIG_HOME/autostart/com.brambleworks.Glowdeck.desktop"
        for _ in $(seq 20); do
            [ -f "$entry" ] && break
            sleep 0.1
        done
        grep -q "^Exec=.*glowdeck" "$entry" 2>/dev/null || fail "\"Run at Start\" wrote no autostart entry starting glowdeck"
        # What opens over this window paints without a compositing manager.
        expect_general_pane_windows
        ;;
    esac
    screenshot "pane-$(tr 'A-Z' 'a-z' <<<"$pane")"
done

# Escape closes the window.
xdotool key Escape
for _ in $(seq 20); do
    xdotool search --onlyvisible --name '^Hotkeys$' >/dev/null 2>&1 || break
    sleep 0.1
done
xdotool search --onlyvisible --name '^Hotkeys$' >/dev/null 2>&1 && fail "Escape did not close the preferences window"

# ---- The drop-down window lists the bridge's lights, without the hidden one ---------------------------------
dropdown=$(open_dropdown) || fail "clicking the tray icon did not open a drop-down window about 200 px wide"
read -r win_id win_x win_y win_w win_h <<<"$dropdown"
atspi --timeout 10 wait label "$shown_name" >/dev/null || fail "the drop-down window does not list $shown_name"
atspi --timeout 1 wait label "$hidden_name" >/dev/null 2>&1 && fail "the drop-down window lists the hidden $hidden_name"
say "drop-down window ${win_w}x${win_h} at ($win_x,$win_y) lists $shown_name, not the hidden $hidden_name"
sleep 0.3
screenshot dropdown

# ---- A change made by another app shows at once: the bridge pushes it ----------------------------------------
bridge_log="$e2e_work/simulator-signed.out"
grep -q "GET /eventstream/clip/v2" "$bridge_log" || fail "glowdeck did not open the bridge's event stream"
lights_read() { grep -cE "GET /api/$key/lights( |\$)" "$bridge_log"; }
shown_id=$(sed -n 2p <<<"$light_ids")
checked() { atspi --timeout 2 wait "check box" "$shown_name" | grep -q checked; }
if checked; then want=false; else want=true; fi
before=$(lights_read)
started=$(date +%s%N)
curl -s --noproxy '*' --max-time 2 -X POST -d "{\"on\":$want}" \
    "http://$address/__control/external/lights/$shown_id/state" >/dev/null || fail "the control request failed"
shown=""
for _ in $(seq 30); do
    if { [ "$want" = true ] && checked; } || { [ "$want" = false ] && ! checked; }; then
        shown=$((($(date +%s%N) - started) / 1000000))
        break
    fi
done
[ -n "$shown" ] || fail "switching $shown_name elsewhere did not show in the open drop-down window"
say "switched elsewhere, $shown_name showed it after $shown ms (as seen through the accessibility bus)"
# Nothing was read for it, and the lights are read once a minute at most now, not every 3.5 s.
sleep 8
[ $(($(lights_read) - before)) -le 1 ] ||
    fail "the lights were read $(($(lights_read) - before)) times in 8 s with the event stream open"
say "with the event stream open, the lights were read $(($(lights_read) - before)) times in 8 s"

# ---- Drag a brightness slider to 90 % of its width -----------------------------------------------
# Prints "id bri" per light that has a brightness.
light_brightness() {
    curl -s --noproxy '*' --max-time 2 "http://$address/api/$key/lights" | /usr/bin/python3 -c 'import json, sys
for id, light in json.load(sys.stdin).items():
    if "bri" in light.get("state", {}):
        print(id, light["state"]["bri"])'
}
# The row's brightness slider, found by its name: drag it from its left end to 90 % of its width.
dropdown=$(open_dropdown) || fail "the drop-down window closed and does not open again"
read -r win_id win_x win_y win_w win_h <<<"$dropdown"
read -r slider_x slider_y slider_w slider_h < <(atspi where slider "$shown_name brightness") ||
    fail "no slider \"$shown_name brightness\" on screen"
y=$((slider_y + slider_h / 2))
x_from=$((slider_x + 2))
x_to=$((slider_x + slider_w * 9 / 10))
before=$(light_brightness)
xdotool mousemove "$x_from" "$y" mousedown 1
for step in 1 2 3 4 5 6 7 8; do
    xdotool mousemove "$((x_from + (x_to - x_from) * step / 8))" "$y"
    sleep 0.03
done
xdotool mouseup 1
# The action queue sends within 0.3 to 0.6 s.
changed=""
for _ in $(seq 20); do
    sleep 0.1
    after=$(light_brightness)
    changed=$(awk 'NR == FNR { was[$1] = $2; next } ($1 in was) && was[$1] != $2 { print $1, was[$1], $2; exit }' \
        <(echo "$before") <(echo "$after"))
    [ -n "$changed" ] && break
done
screenshot after-drag

[ -n "$changed" ] || fail "dragging the slider of \"$shown_name\" changed no light's brightness"
read -r light_id bri_before bri_after <<<"$changed"
say "dragging the slider of $shown_name set light $light_id from bri $bri_before to $bri_after"
[ "$bri_after" -ge 200 ] || fail "light $light_id has bri $bri_after after a drag to 90 %, expected 200 or more"
# ---- The connection pane for a bridge with old firmware (self-signed) and one without HTTPS ----------------
for kind in self-signed plain-http; do
    if [ "$kind" = self-signed ]; then
        start_simulator "$kind" --tls-port 0 --certificate self-signed --bridge-id 001788FFFE00C0DE --accept-pairing
        target=$tls_address
        expect="~this bridge's certificate is not signed by the bridge maker"
    else
        start_simulator "$kind" --bridge-id 001788FFFE00BEEF --accept-pairing
        target=$address
        expect="~plain HTTP .this bridge offers no encryption"
    fi
    open_settings
    atspi press "page tab" Connection
    atspi press "radio button" Manual
    atspi type text "IP address of your Hue bridge" "$target"
    atspi press "push button" Connect
    atspi --timeout 15 wait label "$expect" >/dev/null || fail "pairing with the $kind bridge at $target is not shown as such"
    sleep 0.3
    screenshot "pane-connection-$kind"
    say "paired with the $kind bridge at $target: $(stored bridgeTransport), bridge $(stored bridgeID)"
    xdotool key Escape
done

# ---- A switch-off timer from the tray icon's menu, then the bridge gone -------------------------------------
# "Off in 5 minutes" is the menu's second entry; the bridge gets Glowdeck's own named timer. The menu then holds
# "Lights off at … — Cancel" as its fifth entry, before Settings: taking it deletes the timer again.
timer_on_bridge() {
    curl -s --noproxy '*' --max-time 2 "http://$address/api/$(stored bridgeUser)/schedules" |
        grep -q '"Glowdeck: lights off"'
}
await_timer() {
    for _ in $(seq 30); do
        [ "$(timer_on_bridge && echo yes || echo no)" = "$1" ] && return 0
        sleep 0.1
    done
    return 1
}
click_tray_icon 3
sleep 0.4
xdotool key Down Down Return
await_timer yes || fail "\"Off in 5 minutes\" left no timer named \"Glowdeck: lights off\" on the bridge"
click_tray_icon 3
sleep 0.4
screenshot menu-timer
xdotool key Down Down Down Down Down Return
await_timer no || fail "the menu's fifth entry did not cancel the pending timer"
atspi --timeout 2 wait "page tab" Connection >/dev/null 2>&1 && fail "the menu's fifth entry opened Settings, not Cancel"

# The paired bridge goes away: the pane says it does not answer, and the key stays stored.
key=$(stored bridgeUser)
kill "${e2e_pids[-1]}"
open_settings
atspi press "page tab" Connection
atspi --timeout 15 wait label "NOT ANSWERING" >/dev/null || fail "a paired bridge that went away is not shown as not answering"
atspi press "push button" Connect
sleep 1
[ "$(stored bridgeUser)" = "$key" ] || fail "Connect with the bridge away emptied the stored key"
atspi audit Connection || fail "the Connection pane has controls without a name"
sleep 0.3
screenshot pane-connection-not-answering
xdotool key Escape

kill -0 "$glowdeck_pid" 2>/dev/null || fail "glowdeck quit during the test"
say "PASS"
exit 0
