#!/usr/bin/env bash
# Plays the user at the real window program under the private X server:
# types echo hello>out.txt and a few commands that print in colour, then exit
# and Enter, through the keyboard, and checks the file and that the program
# ended by itself.
#   Set by tools/wine-run: DISPLAY, WINE_PID, OMB_SCRATCH; OMB_ARTIFACTS may
#   name a folder for screenshots.
set -u

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
    capture "$OMB_ARTIFACTS/typing_driver_$1.png" || true
}

# Pixels of an exact colour in a picture.
pixels_of() {
    convert "$1" -fill black +opaque "$2" -fill white -opaque "$2" -format '%[fx:int(mean*w*h+0.5)]' info:
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
timeout 10 xdotool windowsize --sync "$window" 700 560 2>/dev/null
line 'echo hello>out.txt'
line 'echo hello'
# Output in several colours: a colour that lasts until the next, and an error.
line 'colour yellow & echo yellow & colour green & echo green & colour magenta & echo magenta & colour text'
line 'nosuchcommand'
sleep 1
shot typed
running || { echo "the program ended after echo"; exit 1; }

# The output is drawn in its colours: the error in red, a line in yellow.
picture="$OMB_SCRATCH/typed.png"
capture "$picture" || { echo "no picture of the window"; exit 1; }
for colour in '#FF0000' '#FFFF00'; do
    count=$(pixels_of "$picture" "$colour")
    [ "${count:-0}" -gt 20 ] || { echo "no text in $colour on the screen ($count pixels)"; exit 1; }
done

# The program starts in the scratch folder: the redirected file is there.
[ "$(cat "$OMB_SCRATCH/out.txt" 2>/dev/null)" = "$(printf 'hello\r')" ] ||
    { echo "out.txt does not hold hello: $(od -c "$OMB_SCRATCH/out.txt" 2>&1 | head -3)"; exit 1; }

xdotool type --delay 40 'exit'
xdotool key Return
for _ in $(seq 150); do
    running || exit 0
    sleep 0.2
done
shot stuck
echo "exit typed, but the program is still running"
exit 1
