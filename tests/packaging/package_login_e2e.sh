#!/usr/bin/env bash
# The unpacked package's glowdeck on a desktop (Xvfb, trayer, the accessibility bus): the first start's
# welcome window, the drop-down window's Settings button, the General pane, "Run at start". The autostart
# entry it writes is the unpacked desktop entry, starting the unpacked program (which is on no PATH) with the
# settings file it was started with; the program's windows carry the application icon it finds beside itself.
# "Run at start" off removes the entry.
#
# Usage: package_login_e2e.sh <package folder> <artifact-dir>
# Exit codes: 0 passed, 1 failed, 77 skipped (a tool is missing).
set -u
usage="usage: package_login_e2e.sh <package folder> <artifact-dir>"
out=${1:?$usage}
artifacts=${2:?$usage}

e2e_name=package
. "$(dirname "${BASH_SOURCE[0]}")/../e2e/lib/desktop.sh"

e2e_require_tools Xvfb trayer xdotool xprop dbus-run-session dpkg-deb desktop-file-validate
e2e_require_atspi
e2e_private_session "$@"
e2e_prepare "$artifacts"
deb=$(ls "$out"/*.deb 2>/dev/null | head -n1)
[ -f "$deb" ] || fail "no package in $out (the package_build test makes it)"
root="$e2e_work/unpacked"
dpkg-deb -x "$deb" "$root" || fail "dpkg-deb -x $deb failed"
id=com.brambleworks.Glowdeck
packaged="$root/usr/share/applications/$id.desktop"
autostart="$XDG_CONFIG_HOME/autostart/$id.desktop"

e2e_start_display
e2e_start_trayer
e2e_start_atspi
e2e_start_glowdeck "$root/usr/bin/glowdeck" --settings "$e2e_work/settings.json"

atspi --timeout 15 wait "push button" "Let's go!" >/dev/null || fail "no welcome window with \"Let's go!\""
atspi press "push button" "Let's go!"
atspi --timeout 5 press "push button" Settings || fail "the drop-down window has no Settings button"
atspi --timeout 5 press "page tab" General || fail "the preferences window has no General tab"
atspi --timeout 5 wait "check box" "Run at start" | grep -q checked &&
    fail "\"Run at start\" is on at the first start"
atspi press "check box" "Run at start"
for _ in $(seq 30); do
    [ -f "$autostart" ] && break
    sleep 0.1
done
[ -f "$autostart" ] || fail "\"Run at start\" wrote no $autostart"
sleep 0.4 # the window's resize to the pane takes 0.25 s
screenshot general

# The unpacked entry, its Exec pointed at the unpacked program and the settings file of this run, skipped by the
# desktop once that program is gone, and started as a program rather than through the bus (which would lose the
# settings file). Its actions (all lights on, all off) stay as packaged.
expected=$(sed -e "/^\[Desktop Entry\]/,/^\[/ {
        /^TryExec=/d
        /^DBusActivatable=/d
        s|^Exec=.*|Exec=$root/usr/bin/glowdeck --settings $e2e_work/settings.json\nTryExec=$root/usr/bin/glowdeck|
    }" "$packaged")
if [ "$(cat "$autostart")" != "$expected" ]; then
    diff <(echo "$expected") "$autostart"
    fail "the autostart entry is not the unpacked desktop entry starting the unpacked program"
fi
desktop-file-validate "$autostart" || fail "the autostart entry is not a valid desktop entry"
say "the autostart entry is the unpacked one, starting $root/usr/bin/glowdeck with its settings file"

window=$(xdotool search --onlyvisible --name '^Glowdeck — General$' | head -n1)
[ -n "$window" ] || fail "no window named General"
xprop -id "$window" _NET_WM_ICON | grep -q 'Icon (' || fail "the preferences window has no icon"
xprop -id "$window" WM_CLASS | grep -q '"Glowdeck"' ||
    fail "the window's class is not the desktop entry's StartupWMClass: $(xprop -id "$window" WM_CLASS)"

atspi press "check box" "Run at start"
for _ in $(seq 30); do
    [ -f "$autostart" ] || break
    sleep 0.1
done
[ -f "$autostart" ] && fail "switching \"Run at start\" off left $autostart"
kill -0 "$glowdeck_pid" 2>/dev/null || fail "glowdeck quit during the test"
say "PASS"
exit 0
