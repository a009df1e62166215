# A private desktop for end-to-end tests: Xvfb on a free display, optionally a tray host (trayer) and the
# accessibility bus, the real glowdeck with every outside address switched off, screenshots and output checks.
# Sourced by the tests/e2e/*.sh scripts; each sets e2e_name first (used in messages).
#
# Exit codes of a test: 0 passed, 1 failed, 77 skipped (a tool is missing).

say() { echo "${e2e_name:-e2e}: $*"; }
skip() {
    say "SKIP: $*"
    exit 77
}

# Skips unless every named program is on PATH.
e2e_require_tools() {
    local tool
    for tool in "$@"; do
        command -v "$tool" >/dev/null 2>&1 || skip "$tool is not installed (Debian: see scripts/install-deps.sh)"
    done
    # Only ImageMagick's converter will do; another "convert" may sit earlier on PATH.
    if command -v magick >/dev/null 2>&1 && magick -version 2>/dev/null | grep -q ImageMagick; then
        e2e_convert=(magick)
    elif [ -x /usr/bin/convert ] && /usr/bin/convert -version 2>/dev/null | grep -q ImageMagick; then
        e2e_convert=(/usr/bin/convert)
    else
        skip "ImageMagick (magick or /usr/bin/convert) is not installed"
    fi
}

# Skips unless Debian's python3 can drive the accessibility interface.
e2e_require_atspi() {
    [ -x /usr/libexec/at-spi-bus-launcher ] || skip "at-spi2-core is not installed"
    /usr/bin/python3 -c 'import pyatspi' 2>/dev/null || skip "python3-pyatspi is not installed"
}

# Runs the calling script again inside a private session bus, once: a StatusNotifierWatcher of the desktop
# would otherwise take the icon away from trayer, and trayer may leave a bus daemon behind.
e2e_private_session() {
    if [ -z "${GLOWDECK_E2E_IN_SESSION:-}" ]; then
        export GLOWDECK_E2E_IN_SESSION=1
        exec dbus-run-session -- bash "$0" "$@"
    fi
}

# Makes the artifact folder (clearing this test's old screenshots and logs) and the work folder, with private
# XDG folders and no proxy. Everything started with e2e_background is stopped on exit, last first.
e2e_prepare() {
    local artifacts=$1
    mkdir -p "$artifacts" || exit 1
    e2e_artifacts=$(cd "$artifacts" && pwd)
    rm -f "$e2e_artifacts/${e2e_name}"-*.png "$e2e_artifacts/${e2e_name}"-*.log
    e2e_work=$(mktemp -d "${TMPDIR:-/tmp}/glowdeck-e2e.XXXXXX") || exit 1
    e2e_pids=()
    trap e2e_cleanup EXIT
    trap 'exit 1' INT TERM

    export XDG_RUNTIME_DIR="$e2e_work/runtime" XDG_CONFIG_HOME="$e2e_work/config"
    export XDG_CACHE_HOME="$e2e_work/cache" XDG_DATA_HOME="$e2e_work/data"
    mkdir -p "$XDG_RUNTIME_DIR" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_DATA_HOME"
    chmod 0700 "$XDG_RUNTIME_DIR"
    # No proxy may turn a loopback request into one to somewhere else.
    unset http_proxy https_proxy all_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY no_proxy NO_PROXY
    export QT_QPA_PLATFORM=xcb
    # The labels and messages looked for are the English ones, whatever language the developer's session has.
    export LC_ALL=C.UTF-8 LANGUAGE=
}

e2e_background() {
    "$@" &
    e2e_pids+=($!)
}

e2e_cleanup() {
    local i pid
    for ((i = ${#e2e_pids[@]} - 1; i >= 0; i--)); do
        pid=${e2e_pids[i]}
        kill "$pid" 2>/dev/null
        for _ in $(seq 30); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        kill -9 "$pid" 2>/dev/null
        wait "$pid" 2>/dev/null
    done
    [ -f "$e2e_work/glowdeck.out" ] && cp "$e2e_work/glowdeck.out" "$e2e_artifacts/${e2e_name}-stdout.log"
    [ -f "$e2e_work/glowdeck.err" ] && cp "$e2e_work/glowdeck.err" "$e2e_artifacts/${e2e_name}-stderr.log"
    local log
    for log in xvfb trayer; do
        [ -s "$e2e_work/$log.log" ] && cp "$e2e_work/$log.log" "$e2e_artifacts/${e2e_name}-$log.log"
    done
    rm -rf "$e2e_work"
}

# Pictures are read from the display's own frame buffer (a file Xvfb keeps in the work folder), not asked of the
# X server: on Xvfb a window mapped over another window reads back black through GetImage on the root window (so
# with xwd -root) until it is moved, though the frame buffer holds every pixel it painted.
e2e_screen() { echo "$e2e_work/Xvfb_screen0"; }

# Saves the whole screen, or the rectangle WxH+X+Y given second, as <artifacts>/<e2e_name>-<name>.png.
screenshot() {
    "${e2e_convert[@]}" "xwd:$(e2e_screen)" ${2:+-crop "$2" +repage} "${@:3}" \
        "png:$e2e_artifacts/${e2e_name}-$1.png" 2>/dev/null || say "could not take the screenshot $1"
}

# Fails unless the window with the X id $1 (called $2 in the message) shows what it painted: no more than a
# quarter of its pixels pure black, which is how a window shows that was mapped but never drawn, or a
# see-through one without a compositing manager.
expect_painted() {
    local X Y WIDTH HEIGHT black
    eval "$(xdotool getwindowgeometry --shell "$1" 2>/dev/null)"
    [ -n "${WIDTH:-}" ] || fail "$2 is not on screen"
    black=$("${e2e_convert[@]}" "xwd:$(e2e_screen)" -crop "${WIDTH}x${HEIGHT}+${X}+${Y}" +repage \
        -fill white +opaque black -negate -format '%[fx:mean]' info: 2>/dev/null)
    [ -n "$black" ] || fail "the screen could not be read for $2"
    awk -v black="$black" 'BEGIN { exit !(black <= 0.25) }' ||
        fail "$2 is black on screen ($(awk -v b="$black" 'BEGIN { printf "%.0f", b * 100 }') % of its pixels)"
}

# With the preferences window on its General pane: that window, the App Icon list and the Debug Information
# window opened over it all paint, and Escape closes the list first, then the debug window, each without the
# preferences window.
expect_general_pane_windows() {
    local preferences before list debug
    preferences=$(xdotool search --onlyvisible --name '^Glowdeck — General$' | head -n1)
    [ -n "$preferences" ] || fail "no preferences window on its General pane"
    expect_painted "$preferences" "the preferences window"
    before=$(window_ids)
    atspi press "combo box" "~." # the pane's only one, named by its choice
    list=$(new_window $before) || fail "the App Icon list did not open"
    expect_painted "$list" "the App Icon list"
    screenshot pane-general-app-icons
    xdotool key Escape
    window_closes "$list" || fail "Escape did not close the App Icon list"
    window_ids | grep -qx "$preferences" || fail "Escape in the App Icon list closed the preferences window"
    atspi press "push button" "Debug information…"
    debug=$(new_window $before) || fail "\"Debug Information…\" opened no window"
    [ "$(xdotool getwindowname "$debug")" = "Debug information" ] || fail "the newest window is not Debug Information"
    expect_painted "$debug" "the Debug Information window"
    screenshot debug-information
    xdotool key Escape
    window_closes "$debug" || fail "Escape did not close the Debug Information window"
    window_ids | grep -qx "$preferences" || fail "Escape in the debug window closed the preferences window"
    say "the App Icon list and the Debug Information window paint over the preferences window; Escape closes each alone"
}

# Succeeds once the window with the X id $1 no longer shows (2 s at most).
window_closes() {
    for _ in $(seq 20); do
        window_ids | grep -qx "$1" || return 0
        sleep 0.1
    done
    return 1
}

# The ids of the program's top-level windows that show, the topmost last.
window_ids() { xdotool search --onlyvisible --maxdepth 1 --pid "$glowdeck_pid" 2>/dev/null; }

# The topmost window of the program that shows and is not among the ids given, once one shows (3 s at most).
new_window() {
    local id
    for _ in $(seq 30); do
        for id in $(window_ids | tac); do
            grep -qw -- "$id" <<<" $* " || {
                echo "$id"
                return 0
            }
        done
        sleep 0.1
    done
    return 1
}

fail() {
    say "FAIL: $*"
    screenshot failure
    say "screenshots and the program's output are in $e2e_artifacts"
    exit 1
}

# Starts Xvfb on a display it picks itself (so tests can run side by side) and exports DISPLAY. Two servers that
# start at the same moment can both be told the same free display, and one of them then goes away: a display
# that does not answer is started again on another.
e2e_start_display() {
    local attempt
    for attempt in 1 2 3; do
        : >"$e2e_work/display"
        e2e_background Xvfb -displayfd 3 -screen 0 1280x800x24 -fbdir "$e2e_work" -nolisten tcp 3>"$e2e_work/display" \
            >"$e2e_work/xvfb.log" 2>&1
        for _ in $(seq 100); do
            [ -s "$e2e_work/display" ] && break
            sleep 0.1
        done
        [ -s "$e2e_work/display" ] || fail "Xvfb did not start: $(cat "$e2e_work/xvfb.log")"
        export DISPLAY=":$(tr -dc 0-9 <"$e2e_work/display")"
        sleep 0.2
        if kill -0 "${e2e_pids[-1]}" 2>/dev/null && xdpyinfo >/dev/null 2>&1; then
            say "Xvfb on display $DISPLAY"
            return 0
        fi
        say "Xvfb on display $DISPLAY does not answer (attempt $attempt); starting another"
        kill "${e2e_pids[-1]}" 2>/dev/null
    done
    fail "no Xvfb display answered: $(cat "$e2e_work/xvfb.log")"
}

# An XEmbed tray at the top right. It must be there before glowdeck, or the program sees no tray at first. On a
# busy machine trayer now and then never maps its panel (or dies): it gets a second chance, with its log kept.
e2e_start_trayer() {
    local attempt
    for attempt in 1 2; do
        e2e_background trayer --edge top --align right --widthtype request --height 24 \
            >"$e2e_work/trayer.log" 2>&1
        for _ in $(seq 100); do
            xdotool search --onlyvisible --class trayer >/dev/null 2>&1 && return 0
            kill -0 "${e2e_pids[-1]}" 2>/dev/null || break
            sleep 0.1
        done
        say "trayer did not show its panel (attempt $attempt): $(tr '\n' ' ' <"$e2e_work/trayer.log")"
        kill "${e2e_pids[-1]}" 2>/dev/null
        wait "${e2e_pids[-1]}" 2>/dev/null
    done
    fail "trayer did not show its panel"
}

# The accessibility bus; glowdeck started afterwards exposes its widgets on it.
e2e_start_atspi() {
    e2e_background /usr/libexec/at-spi-bus-launcher --launch-immediately >"$e2e_work/atspi.log" 2>&1
    export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
}

# Starts glowdeck with the given arguments and every outside address switched off; sets glowdeck_pid.
e2e_start_glowdeck() {
    local glowdeck=$1
    shift
    [ -x "$glowdeck" ] || fail "$glowdeck is not an executable"
    GLOWDECK_TRACE_STARTUP=1 GLOWDECK_DISCOVERY_URL= GLOWDECK_MDNS_SERVICE= GLOWDECK_ARP_COMMAND= GLOWDECK_ERROR_ENDPOINT= GLOWDECK_HELP_URL= \
        GLOWDECK_FEEDBACK_URL= GLOWDECK_REVIEW_URL= GLOWDECK_WEBSITE_URL= GLOWDECK_DONATION_URL= \
        "$glowdeck" "$@" >"$e2e_work/glowdeck.out" 2>"$e2e_work/glowdeck.err" &
    glowdeck_pid=$!
    e2e_pids+=("$glowdeck_pid")
}

# Waits up to $2 tenths of a second for the pattern $1 in the program's output; prints the first match.
await_output() {
    local line
    for _ in $(seq "$2"); do
        line=$(cat "$e2e_work/glowdeck.out" "$e2e_work/glowdeck.err" 2>/dev/null | grep -m1 -E "$1")
        [ -n "$line" ] && {
            echo "$line"
            return 0
        }
        kill -0 "$glowdeck_pid" 2>/dev/null || return 1
        sleep 0.1
    done
    return 1
}

# Visible top-level windows of the program as "id x y width height".
top_windows() {
    local id
    for id in $(window_ids); do
        (
            eval "$(xdotool getwindowgeometry --shell "$id" 2>/dev/null)"
            [ -n "${WIDTH:-}" ] && echo "$id $X $Y $WIDTH $HEIGHT"
        )
    done
}

# The accessibility driver (tests/e2e/lib/atspi.py), run with Debian's python3, which has pyatspi.
atspi() {
    /usr/bin/python3 "$(dirname "${BASH_SOURCE[0]}")/atspi.py" "$@"
}
