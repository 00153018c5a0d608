# Shared by the drivers that play the user at the real window program under
# the private X server (sourced, not run). The caller sets driver_name, which
# names its screenshots.
#   Set by tools/wine-run: DISPLAY, WINE_PID, OMB_SCRATCH; OMB_ARTIFACTS may
#   name a folder for screenshots.

# The screen cut to the main window, as the user sees it, into a file.
capture() {
    local geometry X Y WIDTH HEIGHT
    geometry=$(xdotool getwindowgeometry --shell "$window" 2>/dev/null)
    eval "$geometry"
    import -window root -crop "${WIDTH}x${HEIGHT}+${X}+${Y}" +repage "$1" 2>/dev/null
}

shot() {
    [ -n "${OMB_ARTIFACTS:-}" ] || return 0
    mkdir -p "$OMB_ARTIFACTS"
    capture "$OMB_ARTIFACTS/${driver_name}_$1.png" || true
}

# Types a line and Enter, then gives the output time to be drawn.
line() {
    xdotool type --delay 40 "$1"
    xdotool key Return
    sleep 0.5
}

running() { kill -0 "$WINE_PID" 2>/dev/null; }

# Waits for the main window (in $window), then for the prompt, and makes the
# window taller so that it holds more rows.
find_window() {
    window=
    for _ in $(seq 300); do
        window=$(xdotool search --name 'Ombrel' 2>/dev/null | head -n 1)
        [ -n "$window" ] && break
        running || { echo "the program ended before its window came up"; exit 1; }
        sleep 0.2
    done
    [ -n "$window" ] || { echo "no main window"; exit 1; }
    # Keys typed during start-up are dropped on purpose.
    sleep 2
    xdotool windowfocus --sync "$window"
    timeout 10 xdotool windowsize --sync "$window" 700 560 2>/dev/null
}

# Types exit and waits for the program to end by itself.
exit_program() {
    xdotool type --delay 40 'exit'
    xdotool key Return
    for _ in $(seq 150); do
        running || exit 0
        sleep 0.2
    done
    shot stuck
    echo "exit typed, but the program is still running"
    exit 1
}
