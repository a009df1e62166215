#!/usr/bin/env bash
# The drop-down window as a Linux user meets it, end to end: a home of 149 lamps, some with long names, on a
# simulated bridge (its own process on 127.0.0.1), the compact window of it in both appearances, an XEmbed tray on a light and then a dark panel, the window opened from the icon, every
# control listed through AT-SPI with its name, the keyboard (Tab, End on a slider, Escape), the bridge gone and
# back, and then the desktop's dark appearance (a stand-in portal) with a StatusNotifierItem tray (a stand-in
# org.kde.StatusNotifierWatcher): the window opens at the pointer. Last, two bridges, one per floor: a section
# each under its name, in the dark and the light. Screenshots stay in the artifact folder.
#
# Usage: dropdown_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>
# Exit codes: 0 passed, 1 failed, 77 skipped (a tool is missing).
set -u

glowdeck=${1:?usage: dropdown_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>}
simulator=${2:?usage: dropdown_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>}
artifacts=${3:?usage: dropdown_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

e2e_name=dropdown
. "$here/lib/desktop.sh"

e2e_require_tools Xvfb trayer xdotool xwininfo dbus-run-session dbus-send curl
e2e_require_atspi
/usr/bin/python3 -c 'from gi.repository import Gio' 2>/dev/null || skip "python3-gi is not installed"
e2e_private_session "$@"
e2e_prepare "$artifacts"
e2e_start_display
e2e_start_atspi

# ---- A bridge whose names are long ------------------------------------------------------------------------------
key=dropdowne2ekey0123456789
"$simulator" --save-home "$e2e_work/home.json" >/dev/null || fail "the simulator cannot write its home"
# A home as people have them: 149 lamps in 21 rooms (tests/e2e/lib/big_home.py), with a few names made longer.
/usr/bin/python3 "$here/lib/big_home.py" "$e2e_work/home.json" 149 || fail "cannot make the big home"
/usr/bin/python3 - "$e2e_work/home.json" <<'PY' || fail "cannot edit the home file"
import json, sys
path = sys.argv[1]
home = json.load(open(path))
first = sorted(home["lights"], key=int)[0]
home["lights"][first]["name"] = "Living room floor lamp by the big window"
for group in home["groups"].values():
    group["name"] = group["name"] + " and the long hallway upstairs"
# Enough scenes in the rooms for the scenes panel to offer its filter.
rooms = [gid for gid, group in home["groups"].items() if group["type"] == "Room"]
template = next(iter(home["scenes"].values()))
for i in range(18):
    group = rooms[i % len(rooms)]
    scene = dict(template, name=["Nightlight", "Reading", "Dinner"][i % 3] + f" {i}", group=group,
                 lights=home["groups"][group]["lights"], lightstates={})
    home["scenes"][f"e2eScene{i:02d}"] = scene
json.dump(home, open(path, "w"))
PY
start_bridge() { # [port]
    "$simulator" --port "${1:-0}" --user "$key" --home "$e2e_work/home.json" >"$e2e_work/bridge.out" 2>&1 &
    bridge_pid=$!
    e2e_pids+=("$bridge_pid")
    for _ in $(seq 50); do
        grep -q 'listening on' "$e2e_work/bridge.out" && break
        sleep 0.1
    done
    address=$(grep -o 'listening on 127\.0\.0\.1:[0-9]*' "$e2e_work/bridge.out" | sed 's/listening on //')
    [ -n "$address" ] || fail "the simulated bridge did not start: $(cat "$e2e_work/bridge.out")"
}
start_bridge
light_bri() { curl -s --noproxy '*' --max-time 2 "http://$address/api/$key/lights/$1" | grep -o '"bri": *[0-9]*' | tr -dc 0-9; }
printf '{"bridgeIP":"%s","bridgeUser":"%s","hasSeenWelcomeScreen":true,"showScenes":true}\n' "$address" "$key" \
    >"$e2e_work/settings.json"
chmod 0600 "$e2e_work/settings.json"

# ---- Helpers ----------------------------------------------------------------------------------------------------
# A tray panel along the top, tinted light or dark.
start_panel() {
    local attempt
    for attempt in 1 2; do # a busy machine sometimes loses trayer's first start
        e2e_background trayer --edge top --align right --widthtype request --height 24 --transparent true \
            --alpha 0 --tint "$1" >"$e2e_work/trayer.log" 2>&1
        panel_pid=${e2e_pids[-1]}
        for _ in $(seq 100); do
            xdotool search --onlyvisible --class trayer >/dev/null 2>&1 && return 0
            sleep 0.1
        done
        kill "$panel_pid" 2>/dev/null
    done
    fail "trayer did not show its panel: $(cat "$e2e_work/trayer.log")"
}
# Saves the top right corner of the screen, where the icon sits, as <name>.png.
screenshot_tray() { screenshot "$1" 120x24+1160+0 -scale 400%; }
# The drop-down window as "id x y width height", once it shows.
dropdown_window() {
    local found
    for _ in $(seq "${1:-50}"); do
        found=$(top_windows | awk '$4 >= 200 && $4 <= 430 && $5 >= 200 { print; exit }')
        [ -n "$found" ] && {
            echo "$found"
            return 0
        }
        sleep 0.1
    done
    return 1
}
dropdown_gone() {
    for _ in $(seq 50); do
        [ -z "$(top_windows | awk '$4 >= 200 && $4 <= 430 && $5 >= 200')" ] && return 0
        sleep 0.1
    done
    return 1
}
click_icon() {
    local id
    for id in $(xdotool search --onlyvisible --pid "$glowdeck_pid" 2>/dev/null); do
        eval "$(xdotool getwindowgeometry --shell "$id" 2>/dev/null)"
        if [ "${WIDTH:-99}" -le 48 ] && [ "$Y" -lt 30 ]; then
            xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2)) click 1
            return 0
        fi
    done
    return 1
}
# The accessibility tree, saved first: grep leaving early would break the driver's pipe.
tree_file() {
    atspi tree >"$e2e_work/tree.txt" 2>/dev/null
    echo "$e2e_work/tree.txt"
}
focused_name() { grep -m1 'focused' "$(tree_file)" | sed -E "s/^ *[a-z ]+ '(.*)' .*/\1/"; }
banner_showing() { grep -qE "^ *label '(Bridge not reachable|[^']*refused)[^']*' .*showing" "$(tree_file)"; }

# ---- 1. XEmbed tray on a light panel: the window under the icon -------------------------------------------------
start_panel 0xeeeeee
e2e_start_glowdeck "$glowdeck" --settings "$e2e_work/settings.json"
await_output 'tray icon shown after' 100 >/dev/null || fail "the tray icon did not show"
atspi wait '*' "~Glowdeck" >/dev/null 2>&1 # the program is on the accessibility bus
sleep 0.5
screenshot_tray tray-light-panel
for _ in 1 2 3; do
    click_icon || fail "no tray icon in the panel"
    window=$(dropdown_window 20) && break
done
[ -n "${window:-}" ] || fail "clicking the tray icon did not open the drop-down window"
read -r wid wx wy ww wh <<<"$window"
say "under the icon: ${ww}x${wh} at ($wx,$wy)"
# No compositing manager runs here: the window must cut its corners out with a shape, or they show black.
xwininfo -shape -id "$wid" | grep -q "Window shape extents" || fail "no window shape without a compositor"
[ "$wy" -ge 24 ] && [ "$wy" -le 40 ] && [ $((wx + ww)) -le 1280 ] || fail "the window is not under the icon: $window"
atspi --timeout 10 wait "check box" "Living room floor lamp by the big window" >/dev/null ||
    fail "no switch named after the long lamp name"
sleep 0.3
screenshot light-long-names

# Every interactive control that shows has a name.
atspi tree >"$e2e_artifacts/${e2e_name}-atspi.log"
unnamed=$(grep -E "^ *(push button|check box|slider|page tab|toggle button|radio button) '' .*showing" \
    "$e2e_artifacts/${e2e_name}-atspi.log")
[ -z "$unnamed" ] || fail "controls without a name: $unnamed"
controls=$(grep -cE "^ *(push button|check box|slider|page tab) '.+' .*showing" "$e2e_artifacts/${e2e_name}-atspi.log")
[ "$controls" -ge 10 ] || fail "only $controls named controls on screen"
say "$controls named controls on screen, none without a name"

# The compact window of a big home: name, slider and switch on one line, the tenth lamp in view at the default
# size (AT-SPI calls a scrolled-out row "showing" too: its place on the screen is what tells).
read -r _ tenth_y _ tenth_h < <(atspi where "check box" "Candle 10") || fail "no switch for the tenth lamp"
[ $((tenth_y + tenth_h)) -le $((wy + wh)) ] || fail "the tenth lamp is out of view: ${tenth_y}+${tenth_h} in $window"
say "the tenth lamp's switch is in view at the default size ($ww x $wh)"

# The keyboard: Tab through settings, the menu, the three tabs and the lamp filter to the first lamp's disclosure
# and slider; End sends full brightness.
first=$(curl -s --noproxy '*' "http://$address/api/$key/lights" | grep -oE '"[0-9]+": *\{' | head -n1 | tr -dc 0-9)
for _ in 1 2 3 4 5 6 7 8; do xdotool key Tab; done
for _ in $(seq 50); do # the focus reaches the accessibility bus a moment after the keys
    name=$(focused_name)
    [ "$name" = "Living room floor lamp by the big window brightness" ] && break
    sleep 0.1
done
[ "$name" = "Living room floor lamp by the big window brightness" ] || fail "eight Tabs reach \"$name\", not the first slider"
screenshot keyboard-focus
xdotool key End
for _ in $(seq 50); do
    [ "$(light_bri "$first")" -ge 254 ] 2>/dev/null && break
    sleep 0.1
done
[ "$(light_bri "$first")" -ge 254 ] || fail "End on the focused slider did not reach the bridge"
xdotool key Escape
dropdown_gone || fail "Escape did not close the window"
say "keyboard: Tab order, End on a slider reached the bridge, Escape closed the window"

# The rooms panel: the rooms, then the home's zone under its heading, every control named.
show_rooms() { # light|dark: the rooms panel, its zone and a screenshot, then back to the lights
    atspi press "push button" Rooms
    atspi --timeout 5 wait label Zones >/dev/null || fail "no \"Zones\" heading in the rooms panel"
    atspi --timeout 5 wait "check box" "Downstairs and the long hallway upstairs" >/dev/null ||
        fail "no switch named after the zone"
    atspi tree >"$e2e_artifacts/${e2e_name}-rooms-$1-atspi.log"
    ! grep -qE "^ *(push button|check box|slider) '' .*showing" "$e2e_artifacts/${e2e_name}-rooms-$1-atspi.log" ||
        fail "controls without a name in the rooms panel"
    sleep 0.3
    screenshot "rooms-$1"
    show_scenes "$1"
    atspi press "push button" Lights
}
# The scenes panel: headings of rooms, the filter narrowing them as the user types, Escape emptying it.
show_scenes() {
    atspi press "push button" Scenes
    atspi --timeout 5 wait label "Living room and the long hallway upstairs" >/dev/null ||
        fail "no room heading in the scenes panel"
    atspi --timeout 2 wait "push button" "Relax" >/dev/null || fail "no scene \"Relax\""
    sleep 0.3
    screenshot "scenes-$1"
    atspi tree >"$e2e_artifacts/${e2e_name}-scenes-$1-atspi.log"
    read -r x y w h < <(atspi where text "Filter scenes") || fail "no filter field named \"Filter scenes\""
    xdotool mousemove $((x + w / 2)) $((y + h / 2)) click 1 sleep 0.2 type --delay 30 dinner
    atspi --timeout 3 wait-text text "Filter scenes" '^dinner$' >/dev/null || fail "typing did not reach the filter"
    sleep 0.3
    ! grep -qE "^ *push button 'Reading [0-9]+' .*showing" "$(tree_file)" || fail "the filter left \"Reading\" scenes"
    grep -qE "^ *push button 'Dinner 8' .*showing" "$e2e_work/tree.txt" || fail "the filter hid \"Dinner 8\""
    screenshot "scenes-$1-filtered"
    xdotool key Escape
    atspi --timeout 3 wait-text text "Filter scenes" '^$' >/dev/null || fail "Escape did not empty the filter"
    dropdown_window 5 >/dev/null || fail "Escape in the filter closed the window"
}
click_icon && window=$(dropdown_window 20) || fail "the window did not open again"
show_rooms light
xdotool key Escape
dropdown_gone || fail "Escape did not close the window"
say "rooms panel: the zone under \"Zones\", every control named; scenes under their rooms, narrowed by typing"

# ---- 2. The bridge gone and back --------------------------------------------------------------------------------
click_icon && window=$(dropdown_window 20) || fail "the window did not open again"
port=${address##*:}
kill "$bridge_pid"
atspi --timeout 12 wait label "~Bridge not reachable|does not answer|refused|closed" >/dev/null ||
    fail "no banner while the bridge is gone"
sleep 0.3
screenshot bridge-gone
start_bridge "$port"
for _ in $(seq 60); do
    banner_showing || break
    sleep 0.2
done
banner_showing && fail "the banner stays after the bridge came back"
screenshot bridge-back
say "banner shown while the bridge was gone, gone once it answered again"

# ---- 3. The tray icon on a dark panel -----------------------------------------------------------------------------
kill "$panel_pid"
start_panel 0x202020
sleep 1.5
screenshot_tray tray-dark-panel

# ---- 4. Dark appearance and a StatusNotifierItem tray: the window opens at the pointer ---------------------------
kill "$glowdeck_pid"
kill "$panel_pid"
/usr/bin/python3 "$here/stand_in_desktop.py" --watcher --dark >"$e2e_work/desktop.out" 2>&1 &
desktop_pid=$!
e2e_pids+=("$desktop_pid")
for _ in $(seq 50); do
    [ "$(grep -c '^owns' "$e2e_work/desktop.out")" -ge 2 ] && break
    sleep 0.1
done
e2e_start_glowdeck "$glowdeck" --settings "$e2e_work/settings.json"
for _ in $(seq 100); do
    item=$(sed -n 's/^item //p' "$e2e_work/desktop.out" | head -n1)
    [ -n "$item" ] && break
    sleep 0.1
done
[ -n "$item" ] || fail "glowdeck did not register a StatusNotifierItem with the watcher"
activate() { # x y: the pointer goes there and the panel activates the item, as on a click
    xdotool mousemove "$1" "$2"
    dbus-send --session --type=method_call --dest="$item" /StatusNotifierItem \
        org.kde.StatusNotifierItem.Activate "int32:$1" "int32:$2"
}
await_output 'tray icon shown after' 100 >/dev/null || fail "the tray icon did not show on the StatusNotifierItem tray"
activate 700 12
window=$(dropdown_window 50) || fail "Activate on the StatusNotifierItem did not open the window"
read -r _ wx wy ww wh <<<"$window"
say "StatusNotifierItem, pointer at (700,12): ${ww}x${wh} at ($wx,$wy)"
[ $((wx + ww / 2 - 700)) -ge -2 ] && [ $((wx + ww / 2 - 700)) -le 2 ] && [ "$wy" -ge 13 ] && [ "$wy" -le 24 ] ||
    fail "the window is not at the pointer: $window"
sleep 0.5
screenshot dark-at-pointer
show_rooms dark
activate 700 12
dropdown_gone || fail "a second Activate did not close the window"
activate 1000 790
window=$(dropdown_window 50) || fail "the window did not open from a bottom panel"
read -r _ wx wy ww wh <<<"$window"
say "pointer at (1000,790): ${ww}x${wh} at ($wx,$wy)"
[ $((wy + wh)) -le 790 ] && [ $((wy + wh)) -ge 770 ] && [ $((wx + ww / 2 - 1000)) -ge -2 ] &&
    [ $((wx + ww / 2 - 1000)) -le 2 ] || fail "the window is not above the pointer: $window"
sleep 0.3
screenshot dark-above-pointer
kill -0 "$glowdeck_pid" 2>/dev/null || fail "glowdeck quit during the test"

# ---- 5. Two bridges, one per floor: a section each, headed by its name, in the dark and the light ---------------
"$simulator" --port 0 --bridges 2 --user "$key" >"$e2e_work/bridges.out" 2>&1 &
e2e_pids+=($!)
for _ in $(seq 50); do
    [ "$(grep -c 'listening on' "$e2e_work/bridges.out")" -ge 2 ] && break
    sleep 0.1
done
mapfile -t floors < <(grep -oE 'listening on 127\.0\.0\.1:[0-9]+ \(bridge [0-9A-F]{16}\)' "$e2e_work/bridges.out" |
    sed -E 's/listening on ([^ ]+) \(bridge (.*)\)/\1 \2/')
[ "${#floors[@]}" -ge 2 ] || fail "the simulator did not start two bridges: $(cat "$e2e_work/bridges.out")"
read -r down_address down_id <<<"${floors[0]}"
read -r up_address up_id <<<"${floors[1]}"
entry() { printf '{"id":"%s","address":"%s","key":"%s","transport":"http","certificate":"","name":"%s"}' "$@"; }
printf '{"bridges":[%s,%s],"hasSeenWelcomeScreen":true,"showScenes":true}\n' \
    "$(entry "$down_id" "$down_address" "$key" Downstairs)" "$(entry "$up_id" "$up_address" "$key" Attic)" \
    >"$e2e_work/bridges.json"
chmod 0600 "$e2e_work/bridges.json"
look_at_bridges() { # light|dark: both sections with their own lamps, every control named
    # The names the bridges answer with replace those stored.
    atspi --timeout 10 wait '*' "Bridge Philips hue" >/dev/null || fail "no section headed \"Philips hue\""
    atspi --timeout 10 wait '*' "Bridge Upstairs" >/dev/null || fail "no section headed \"Upstairs\""
    sleep 0.5
    atspi tree >"$e2e_artifacts/${e2e_name}-bridges-$1-atspi.log"
    ! grep -qE "^ *(push button|check box|slider|page tab|toggle button) '' .*showing" \
        "$e2e_artifacts/${e2e_name}-bridges-$1-atspi.log" || fail "controls without a name with two bridges"
    local switches
    switches=$(grep -cE "^ *check box '.+' .*showing" "$e2e_artifacts/${e2e_name}-bridges-$1-atspi.log")
    [ "$switches" -ge 2 ] || fail "only $switches lamp switches show with two bridges"
    screenshot "bridges-$1"
}
kill "$glowdeck_pid"
e2e_start_glowdeck "$glowdeck" --settings "$e2e_work/bridges.json"
await_output 'tray icon shown after' 100 >/dev/null || fail "the tray icon did not show with two bridges"
for _ in $(seq 50); do # the new item replaces the old one with the watcher
    item=$(sed -n 's/^item //p' "$e2e_work/desktop.out" | tail -n1)
    activate 700 12
    dropdown_window 10 >/dev/null && break
done
dropdown_window 20 >/dev/null || fail "the window did not open with two bridges"
look_at_bridges dark
kill "$glowdeck_pid" "$desktop_pid" # a light desktop with an XEmbed tray
start_panel 0xeeeeee
e2e_start_glowdeck "$glowdeck" --settings "$e2e_work/bridges.json"
await_output 'tray icon shown after' 100 >/dev/null || fail "the tray icon did not show with two bridges"
for _ in 1 2 3; do
    click_icon && dropdown_window 20 >/dev/null && break
done
dropdown_window 20 >/dev/null || fail "the window did not open with two bridges on the light panel"
look_at_bridges light
say "two bridges: a section each, headed by the bridge's own name, every control named, dark and light"
say "PASS"
exit 0
