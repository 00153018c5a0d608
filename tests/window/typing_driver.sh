#!/usr/bin/env bash
# Plays the user at the real window program under the private X server:
# types a few commands that print in colour, then exit and Enter, through the
# keyboard, and checks that the program ended by itself.
#   Set by tools/wine-run: DISPLAY, WINE_PID, OMB_SCRATCH; OMB_ARTIFACTS may
#   name a folder for screenshots.
set -u

# The screen cut to the main window, as the user sees it.
shot() {
    [ -n "${OMB_ARTIFACTS:-}" ] || return 0
    mkdir -p "$OMB_ARTIFACTS"
    local geometry
    geometry=$(xdotool getwindowgeometry --shell "$window" 2>/dev/null)
    local X Y WIDTH HEIGHT
    eval "$geometry"
    import -window root -crop "${WIDTH}x${HEIGHT}+${X}+${Y}" +repage \
        "$OMB_ARTIFACTS/typing_driver_$1.png" 2>/dev/null || true
}

# Types a line and Enter, then gives the output time to be drawn.
line() {
    xdotool type --delay 40 "$1"
    xdotool key Return
    sleep 0.5
}

running() { kill -0 "$WINE_PID" 2>/dev/null; }

window=
for _ in $(seq 300); do
    window=$(xdotool search --name 'Ombrel' 2>/dev/null | head -n 1)
    [ -n "$window" ] && break
    running || { echo "the program ended before its window came up"; exit 1; }
    sleep 0.2
done
[ -n "$window" ] || { echo "no main window"; exit 1; }

# Keys typed during start-up are dropped on purpose; give it time to reach
# the prompt.
sleep 2
xdotool windowfocus --sync "$window"
# A taller window holds more rows of the screen.
xdotool windowsize --sync "$window" 700 560 2>/dev/null
line 'echo hello'
# Output in several colours: a colour that lasts until the next, and an error.
line 'colour yellow & echo yellow & colour green & echo green & colour magenta & echo magenta & colour text'
line 'nosuchcommand'
sleep 1
shot typed
running || { echo "the program ended after echo"; exit 1; }

xdotool type --delay 40 'exit'
xdotool key Return
for _ in $(seq 150); do
    running || exit 0
    sleep 0.2
done
shot stuck
echo "exit typed, but the program is still running"
exit 1
