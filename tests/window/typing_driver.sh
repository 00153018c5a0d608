#!/usr/bin/env bash
# Plays the user at the real window program under the private X server:
# types a command and Enter, then exit and Enter, through the keyboard, and
# checks that the program ended by itself.
#   Set by tools/wine-run: DISPLAY, WINE_PID, OMB_SCRATCH; OMB_ARTIFACTS may
#   name a folder for screenshots.
set -u

shot() {
    [ -n "${OMB_ARTIFACTS:-}" ] || return 0
    mkdir -p "$OMB_ARTIFACTS"
    import -window root "$OMB_ARTIFACTS/typing_driver_$1.png" 2>/dev/null || true
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
xdotool type --delay 40 'echo hello'
xdotool key Return
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
