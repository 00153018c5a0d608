#!/usr/bin/env bash
# The history across a restart of the window program, in the run's own
# settings store: lines typed in one session are recalled by Up and by prefix
# search in the next, and the history list window runs a row chosen by a
# typed letter.
#   Set by tools/wine-run: DISPLAY, WINE_PID, OMB_SCRATCH.
set -u

find_window() {
    local name=$1 pid=$2 found=
    for _ in $(seq 300); do
        found=$(xdotool search --name "$name" 2>/dev/null | head -n 1)
        [ -n "$found" ] && break
        kill -0 "$pid" 2>/dev/null || return 1
        sleep 0.2
    done
    [ -n "$found" ] && echo "$found"
}

line() {
    xdotool type --delay 40 "$1"
    xdotool key Return
    sleep 0.5
}

wait_end() {
    for _ in $(seq 150); do
        kill -0 "$1" 2>/dev/null || return 0
        sleep 0.2
    done
    return 1
}

# A file the recalled line should have written, waited for.
expect_file() {
    for _ in $(seq 50); do
        [ -f "$OMB_SCRATCH/$1" ] && return 0
        sleep 0.2
    done
    echo "$2: $1 was not written"
    exit 1
}

window=$(find_window '^Ombrel' "$WINE_PID") || { echo "no main window"; exit 1; }
sleep 2
xdotool windowfocus --sync "$window"
line 'echo one>h1.txt'
line 'echo two>h2.txt'
line 'exit'
wait_end "$WINE_PID" || { echo "exit did not end the first session"; exit 1; }
rm -f "$OMB_SCRATCH"/h1.txt "$OMB_SCRATCH"/h2.txt

wine 'X:\omb_rel.exe' &
second=$!
window=$(find_window '^Ombrel' "$second") || { echo "no main window after the restart"; exit 1; }
sleep 2
xdotool windowfocus --sync "$window"
# Up shows exit, Up again the line before it.
xdotool key Up Up Return
expect_file h2.txt "plain stepping"
# Typed text searches back for the newest line that begins with it.
xdotool type --delay 40 'echo o'
xdotool key Up Return
expect_file h1.txt "prefix search"

line 'echo three>h3.txt'
expect_file h3.txt "typing"
rm -f "$OMB_SCRATCH/h3.txt"
line 'history list'
find_window "^History$" "$second" >/dev/null || { echo "history list did not open a window"; kill "$second"; exit 1; }
# Shift-Esc hands the keyboard to the list; a letter selects the previous row
# beginning with it, and Enter runs that row.
xdotool key shift+Escape
sleep 0.5
xdotool key e Return
expect_file h3.txt "the list window's row"

xdotool windowfocus --sync "$window"
line 'exit'
wait_end "$second" || { echo "exit did not end the second session"; kill "$second"; exit 1; }
exit 0
