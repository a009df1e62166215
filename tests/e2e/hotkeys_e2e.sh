#!/usr/bin/env bash
# Global shortcuts on X11, end to end: a stored Ctrl+Alt+K for "every room off" fires while another program has
# the focus (with Num Lock on too), and the simulated bridge (its own process on 127.0.0.1) receives one room
# action per room; a combination another client grabbed is refused in the hotkeys pane as used by the system; a
# shortcut recorded in the pane works at once and again after a restart (in the dark appearance, a stand-in
# portal). The pane's accessibility tree and screenshots stay in the artifact folder.
#
# Usage: hotkeys_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>
# Exit codes: 0 passed, 1 failed, 77 skipped (a tool is missing).
set -u

glowdeck=${1:?usage: hotkeys_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>}
simulator=${2:?usage: hotkeys_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>}
artifacts=${3:?usage: hotkeys_e2e.sh <glowdeck> <glowdeck-simulator> <artifact-dir>}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

e2e_name=hotkeys
. "$here/lib/desktop.sh"

e2e_require_tools Xvfb trayer xdotool xlogo dbus-run-session curl
e2e_require_atspi
/usr/bin/python3 -c 'import ctypes, ctypes.util; assert ctypes.util.find_library("X11")' 2>/dev/null ||
    skip "Python cannot load libX11 (to hold a key grab of another client)"
/usr/bin/python3 -c 'from gi.repository import Gio' 2>/dev/null || skip "python3-gi is not installed"
e2e_private_session "$@"
e2e_prepare "$artifacts"
e2e_start_display
e2e_start_atspi
e2e_start_trayer

# ---- A bridge that prints what it receives ------------------------------------------------------------------------
key=hotkeyse2ekey0123456789
"$simulator" --port 0 --user "$key" --verbose >"$e2e_work/bridge.out" 2>&1 &
e2e_pids+=($!)
for _ in $(seq 50); do
    grep -q 'listening on' "$e2e_work/bridge.out" && break
    sleep 0.1
done
address=$(grep -o 'listening on 127\.0\.0\.1:[0-9]*' "$e2e_work/bridge.out" | sed 's/listening on //')
[ -n "$address" ] || fail "the simulated bridge did not start: $(cat "$e2e_work/bridge.out")"
rooms=$(curl -s --noproxy '*' --max-time 2 "http://$address/api/$key/groups" | /usr/bin/python3 -c '
import json, sys
print(" ".join(sorted(id for id, group in json.load(sys.stdin).items() if group.get("type") == "Room")))')
[ -n "$rooms" ] || fail "the simulated bridge has no rooms"
say "rooms: $rooms"

# Ctrl+Alt+K (K is 40; control 4096 + option 2048) switches every room off.
settings="$e2e_work/settings.json"
printf '{"bridgeIP":"%s","bridgeUser":"%s","hasSeenWelcomeScreen":true,"GlobalHotkeys_allLightsOff":"{\\"carbonKeyCode\\":40,\\"carbonModifiers\\":6144}"}\n' \
    "$address" "$key" >"$settings"
chmod 0600 "$settings"
stored() {
    /usr/bin/python3 -c 'import json, sys
print(json.load(open(sys.argv[1])).get(sys.argv[2], ""))' "$settings" "$1" 2>/dev/null
}

# ---- Helpers ------------------------------------------------------------------------------------------------------
start_glowdeck() {
    e2e_start_glowdeck "$glowdeck" --settings "$settings"
    await_output "tray icon shown" 100 >/dev/null || fail "glowdeck showed no tray icon"
    # The rooms are known once the first read of them is answered.
    for _ in $(seq 100); do
        grep -q "GET /api/$key/groups" "$e2e_work/bridge.out" && return 0
        sleep 0.1
    done
    fail "glowdeck did not read the rooms"
}
stop_glowdeck() {
    kill "$glowdeck_pid"
    wait "$glowdeck_pid" 2>/dev/null
}
# Holds the keys down for a second, long enough for the keyboard to repeat them.
hold() {
    xdotool keydown "$1"
    sleep 1
    xdotool keyup "${1##*+}"
    xdotool keyup "${1%+*}"
}
# Runs "$1 $2" (xdotool key, or hold) with another program's window focused; waits for the one "on": $3 action
# of the whole home (group 0), and makes sure that no more follow.
press_elsewhere() {
    local before ids
    xdotool windowfocus --sync "$logo" 2>/dev/null
    before=$(wc -l <"$e2e_work/bridge.out")
    $1 "$2"
    for _ in $(seq 60); do
        ids=$(tail -n +"$((before + 1))" "$e2e_work/bridge.out" |
            grep -o "PUT /api/$key/groups/[0-9]*/action {\"on\":$3}" | sed 's|.*/groups/||; s|/action.*||' | sort |
            tr '\n' ' ')
        [ "${ids% }" = 0 ] && break
        sleep 0.1
    done
    sleep 0.4 # one more tick of the queue: nothing else may follow
    ids=$(tail -n +"$((before + 1))" "$e2e_work/bridge.out" | grep "PUT /api/$key/groups/" |
        sed 's|.*/groups/||; s|/action.*||' | sort | tr '\n' ' ')
    [ "${ids% }" = 0 ] || fail "$2 sent actions for \"${ids% }\", not one for the whole home (group 0)"
}
open_hotkeys_pane() {
    local panel attempt
    for attempt in 1 2 3; do
        panel=$(xdotool search --onlyvisible --class trayer | head -n1)
        eval "$(xdotool getwindowgeometry --shell "$panel")"
        xdotool mousemove $((X + WIDTH - 12)) $((Y + HEIGHT / 2)) click 3 # the icon is the panel's only one
        sleep 0.4
        xdotool key Down Down Down Down Down Return # Settings
        atspi --timeout 3 wait "page tab" Hotkeys >/dev/null 2>&1 && break
        [ "$attempt" = 3 ] && fail "Settings in the tray icon's menu did not open the preferences window"
    done
    atspi press "page tab" Hotkeys
    atspi --timeout 3 wait "page tab" Hotkeys | grep -q selected || fail "the hotkeys pane did not open"
}
# Clicks a recorder field (left of its middle, away from the clear button): it records from then on.
click_recorder() {
    local x y w h
    read -r x y w h < <(atspi where text "$1") || fail "no recorder \"$1\" on screen"
    xdotool mousemove "$((x + w / 4))" "$((y + h / 2))" click 1
}

# ---- 1. A stored shortcut, pressed while another window has the focus ---------------------------------------------
start_glowdeck
e2e_background xlogo -geometry 300x200+100+100
for _ in $(seq 50); do
    logo=$(xdotool search --onlyvisible --class xlogo 2>/dev/null | head -n1)
    [ -n "$logo" ] && break
    sleep 0.1
done
[ -n "$logo" ] || fail "xlogo did not show its window"
sleep 0.3 # the first refresh settles
press_elsewhere "xdotool key" ctrl+alt+k false
say "Ctrl+Alt+K in another window switched the whole home off, in one request"
# Held down, the keyboard repeats the keys: still one action.
press_elsewhere hold ctrl+alt+k false
say "held down for a second, it acts once"
# Grabbed once per lock variant: it works with Num Lock on as well.
xdotool key Num_Lock
press_elsewhere "xdotool key" ctrl+alt+k false
xdotool key Num_Lock
say "and with Num Lock on"

# ---- 2. A combination another client holds is used by the system --------------------------------------------------
/usr/bin/python3 - "$e2e_work/grabbed" <<'PY' &
import ctypes, ctypes.util, sys, time
x11 = ctypes.CDLL(ctypes.util.find_library("X11"))
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XDefaultRootWindow.restype = ctypes.c_ulong
x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
x11.XKeysymToKeycode.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
x11.XGrabKey.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_uint, ctypes.c_ulong, ctypes.c_int, ctypes.c_int,
                         ctypes.c_int]
x11.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
display = x11.XOpenDisplay(None)
ControlMask, Mod1Mask, GrabModeAsync = 4, 8, 1
x11.XGrabKey(display, x11.XKeysymToKeycode(display, ord("j")), ControlMask | Mod1Mask,
             x11.XDefaultRootWindow(display), 0, GrabModeAsync, GrabModeAsync)
x11.XSync(display, 0)
open(sys.argv[1], "w").write("grabbed\n")
time.sleep(600)
PY
e2e_pids+=($!)
for _ in $(seq 30); do
    [ -s "$e2e_work/grabbed" ] && break
    sleep 0.1
done
[ -s "$e2e_work/grabbed" ] || fail "the other client did not grab Ctrl+Alt+J"

open_hotkeys_pane
click_recorder "All on"
atspi --timeout 2 wait text "All on" | grep -q focused || fail "the "All on" recorder did not take the focus"
xdotool key ctrl+alt+j
atspi --timeout 5 wait label "~already used by the system" >/dev/null ||
    fail "Ctrl+Alt+J, held by another client, was not refused as used by the system"
screenshot used-by-system
[ -z "$(stored GlobalHotkeys_allLightsOn)" ] || fail "a refused combination was stored"
atspi press "push button" OK
say "Ctrl+Alt+J, held by another client, is refused as used by the system"

# ---- 3. Record a shortcut in the pane: it works at once, and after a restart ----------------------------------------
atspi --timeout 3 wait text "All on" | grep -q focused || fail "the recorder did not record again after the alert"
xdotool key ctrl+alt+o
atspi --timeout 3 wait-text text "All on" '^Ctrl\+Alt\+O$' >/dev/null || fail "the recorder does not show Ctrl+Alt+O"
[ "$(stored GlobalHotkeys_allLightsOn)" = '{"carbonKeyCode":31,"carbonModifiers":6144}' ] ||
    fail "Ctrl+Alt+O was not stored: $(stored GlobalHotkeys_allLightsOn)"
atspi press "radio button" Small
[ "$(stored keyIncrement)" = 10 ] || fail "Small did not store the step 10"
sleep 0.3
screenshot pane-light
atspi tree >"$e2e_artifacts/${e2e_name}-tree.txt"
atspi audit Hotkeys || fail "the hotkeys pane has controls without a name"
press_elsewhere "xdotool key" ctrl+alt+o true
say "a shortcut recorded in the pane works at once"

stop_glowdeck
/usr/bin/python3 "$here/stand_in_desktop.py" --dark >"$e2e_work/desktop.out" 2>&1 &
e2e_pids+=($!)
for _ in $(seq 50); do
    grep -q "owns org.freedesktop.portal.Desktop" "$e2e_work/desktop.out" && break
    sleep 0.1
done
start_glowdeck
press_elsewhere "xdotool key" ctrl+alt+o true
say "and after a restart"
open_hotkeys_pane
atspi --timeout 3 wait-text text "All on" '^Ctrl\+Alt\+O$' >/dev/null ||
    fail "after a restart the recorder does not show Ctrl+Alt+O"
sleep 0.3
screenshot pane-dark
atspi press "page tab" "Individual groups"
atspi --timeout 3 wait text "Shortcut 1" >/dev/null || fail ""Individual groups" shows no custom shortcuts"
sleep 0.3
screenshot pane-individual-dark
atspi audit Hotkeys || fail "the "Individual groups" view has controls without a name"
# The connection pane in the dark: its line on how the key travels stays legible.
atspi press "page tab" Connection
atspi --timeout 5 wait label "~over plain HTTP|over HTTPS" >/dev/null || fail "the connection pane does not say how the key travels"
sleep 0.3
screenshot pane-connection-dark
say "PASS"
