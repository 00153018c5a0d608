#!/usr/bin/env bash
# The history across a restart of the window program, in the run's own
# settings store: lines typed in one session are recalled by Up and by prefix
# search in the next, and the history list window runs a row chosen by a
# typed letter.
#   Set by tools/wine-run: DISPLAY, WINE_PID, OMB_SCRATCH.
set -u

. "$(dirname "$0")/driver_helpers.sh"

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
expect_text h2.txt two "plain stepping"
# Typed text searches back for the newest line that begins with it.
xdotool type --delay 40 'echo o'
xdotool key Up Return
expect_text h1.txt one "prefix search"

line 'echo three>h3.txt'
expect_text h3.txt three "typing"
rm -f "$OMB_SCRATCH/h3.txt"
line 'history list'
find_window "^History$" "$second" >/dev/null || { echo "history list did not open a window"; kill "$second"; exit 1; }
# Shift-Esc hands the keyboard to the list; a letter selects the previous row
# beginning with it, and Enter runs that row.
xdotool key shift+Escape
sleep 0.5
xdotool key e Return
expect_text h3.txt three "the list window's row"

xdotool windowfocus --sync "$window"
line 'exit'
wait_end "$second" || { echo "exit did not end the second session"; kill "$second"; exit 1; }
exit 0
