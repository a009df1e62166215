#!/usr/bin/env bash
# Glowdeck on a desktop without a system tray, end to end: at once it shows itself in a window of its own that
# says why, whose menu button opens the tray menu; the "Open Glowdeck" shortcut (Ctrl+Alt+G, pressed with
# xdotool while another program has the focus) brings it up and closes it; a second start brings it back; a tray
# that starts later gets the icon, and once the window is closed a click on the icon opens the drop-down. Then
# --window in the dark appearance under a compositing manager (xcompmgr), where the window, its menu, the App
# Icon list and the Debug Information window paint. Screenshots of the window in both appearances stay in the
# artifact folder.
#
# Usage: window_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>
# Exit codes: 0 passed, 1 failed, 77 skipped (a tool is missing).
set -u

glowdeck=${1:?usage: window_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>}
simulator=${2:?usage: window_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>}
artifacts=${3:?usage: window_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

e2e_name=window
. "$here/lib/desktop.sh"

e2e_require_tools Xvfb trayer xdotool xlogo xcompmgr dbus-run-session
e2e_require_atspi
/usr/bin/python3 -c 'from gi.repository import Gio' 2>/dev/null || skip "python3-gi is not installed"
e2e_private_session "$@"
e2e_prepare "$artifacts"
e2e_start_display
e2e_start_atspi

key=windowe2ekey0123456789
# The big home of tests/e2e/lib/big_home.py: the window's screenshots show how it fits 149 lamps.
"$simulator" --save-home "$e2e_work/home.json" >/dev/null || fail "the simulator cannot write its home"
/usr/bin/python3 "$here/lib/big_home.py" "$e2e_work/home.json" 149 || fail "cannot make the big home"
"$simulator" --port 0 --user "$key" --home "$e2e_work/home.json" >"$e2e_work/bridge.out" 2>&1 &
e2e_pids+=($!)
for _ in $(seq 50); do
    grep -q 'listening on' "$e2e_work/bridge.out" && break
    sleep 0.1
done
address=$(grep -o 'listening on 127\.0\.0\.1:[0-9]*' "$e2e_work/bridge.out" | sed 's/listening on //')
[ -n "$address" ] || fail "the simulated bridge did not start: $(cat "$e2e_work/bridge.out")"
# Ctrl+Alt+G (G is 5; control 4096 + option 2048) opens Glowdeck.
settings="$e2e_work/settings.json"
printf '{"bridgeIP":"%s","bridgeUser":"%s","hasSeenWelcomeScreen":true,"GlobalHotkeys_openGlowdeck":"{\\"carbonKeyCode\\":5,\\"carbonModifiers\\":6144}"}\n' \
    "$address" "$key" >"$settings"
chmod 0600 "$settings"

# The window of window mode as "id x y width height": a top-level window named Glowdeck, wider than the icon.
glowdeck_window() {
    local id
    for _ in $(seq "${1:-50}"); do
        for id in $(xdotool search --onlyvisible --name '^Glowdeck$' 2>/dev/null); do
            (
                eval "$(xdotool getwindowgeometry --shell "$id" 2>/dev/null)"
                [ "${WIDTH:-0}" -gt 100 ] && echo "$id $X $Y $WIDTH $HEIGHT"
            ) && return 0
        done
        sleep 0.1
    done
    return 1
}
window_gone() {
    for _ in $(seq 50); do
        [ -z "$(xdotool search --onlyvisible --name '^Glowdeck$' 2>/dev/null)" ] && return 0
        sleep 0.1
    done
    return 1
}
focus_elsewhere() { xdotool windowfocus --sync "$logo" 2>/dev/null; }

e2e_background xlogo -geometry 300x200+700+400
for _ in $(seq 50); do
    logo=$(xdotool search --onlyvisible --class xlogo 2>/dev/null | head -n1)
    [ -n "$logo" ] && break
    sleep 0.1
done
[ -n "$logo" ] || fail "xlogo did not show its window"

# ---- 1. No tray: a window of its own ----------------------------------------------------------------------------
e2e_start_glowdeck "$glowdeck" --settings "$settings"
await_output 'no system tray is available; showing Glowdeck in a window' 50 >/dev/null ||
    fail "glowdeck did not show itself in a window at once"
read -r wid _ _ ww wh < <(glowdeck_window) || fail "no Glowdeck window on screen"
say "window mode: ${ww}x${wh}"
atspi --timeout 10 wait label "~AppIndicator" >/dev/null || fail "the window does not say why it shows"
atspi --timeout 10 wait "check box" "~.+" >/dev/null || fail "the window shows no lamps"
sleep 0.5
screenshot window-light
atspi audit Glowdeck || fail "the window has controls without a name"

# Its menu button opens the tray menu, and the window stays.
before=$(window_ids)
atspi press "push button" Menu
menu=$(new_window $before) || fail "the menu button did not open the menu"
expect_painted "$menu" "the menu" # no compositing manager runs yet
screenshot window-menu
xdotool key Escape
glowdeck_window 10 >/dev/null || fail "the window went away with the menu"

# ---- 2. The "Open Glowdeck" shortcut and a second start ----------------------------------------------------------
focus_elsewhere
xdotool key ctrl+alt+g
window_gone || fail "Ctrl+Alt+G did not close the open window"
kill -0 "$glowdeck_pid" || fail "closing the window ended glowdeck"
focus_elsewhere
xdotool key ctrl+alt+g
glowdeck_window >/dev/null || fail "Ctrl+Alt+G did not open the window again"
for _ in $(seq 50); do
    [ "$(xdotool getwindowfocus 2>/dev/null)" != "$logo" ] && break
    sleep 0.1
done
[ "$(xdotool getwindowfocus 2>/dev/null)" != "$logo" ] || fail "the window opened by Ctrl+Alt+G has no keyboard focus"
xdotool key ctrl+alt+g
window_gone || fail "Ctrl+Alt+G did not close the window again"
say "Ctrl+Alt+G brings the window up and closes it"
GLOWDECK_DISCOVERY_URL= GLOWDECK_MDNS_SERVICE= GLOWDECK_ARP_COMMAND= \
    "$glowdeck" --settings "$settings" >"$e2e_work/second.out" 2>&1 || fail "the second start failed: $(cat "$e2e_work/second.out")"
glowdeck_window >/dev/null || fail "a second start did not bring the window back"
say "a second start brings it back"

# ---- 3. A tray that starts later takes over once the window is closed -----------------------------------------------
e2e_start_trayer
await_output 'tray icon shown' 150 >/dev/null || fail "the tray that started later got no icon"
glowdeck_window 10 >/dev/null || fail "the window closed when the tray appeared"
xdotool key ctrl+alt+g
window_gone || fail "the window did not close"
panel=$(xdotool search --onlyvisible --class trayer | head -n1)
eval "$(xdotool getwindowgeometry --shell "$panel")"
opened=""
for _ in 1 2 3; do
    xdotool mousemove $((X + WIDTH - 12)) $((Y + HEIGHT / 2)) click 1 # the icon is the panel's only one
    sleep 0.5
    opened=$(top_windows | awk '$4 >= 200 && $5 >= 200 && $3 < 100 { print; exit }') && [ -n "$opened" ] && break
done
[ -n "$opened" ] || fail "a click on the icon did not open the drop-down window"
say "a tray that starts later takes over: the icon opens the drop-down"
kill "$glowdeck_pid"
wait "$glowdeck_pid" 2>/dev/null

# ---- 4. --window, dark, with a compositing manager ---------------------------------------------------------------
e2e_background xcompmgr
/usr/bin/python3 "$here/stand_in_desktop.py" --dark >"$e2e_work/desktop.out" 2>&1 &
e2e_pids+=($!)
for _ in $(seq 50); do
    grep -q "owns org.freedesktop.portal.Desktop" "$e2e_work/desktop.out" && break
    sleep 0.1
done
e2e_start_glowdeck "$glowdeck" --settings "$settings" --window
read -r wid _ < <(glowdeck_window 100) || fail "--window showed no window"
atspi --timeout 10 wait "check box" "~.+" >/dev/null || fail "the dark window shows no lamps"
sleep 0.5
screenshot window-dark
expect_painted "$wid" "the dark window"
before=$(window_ids)
atspi press "push button" Menu
menu=$(new_window $before) || fail "the menu button did not open the menu"
expect_painted "$menu" "the menu"
xdotool key Escape
atspi press "push button" Settings
atspi --timeout 5 press "page tab" General || fail "Settings did not open the preferences window"
sleep 0.4 # the window's resize to the pane
expect_general_pane_windows
say "PASS"
