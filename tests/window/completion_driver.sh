#!/usr/bin/env bash
# TAB completion in the real window, typed through the keyboard: a file with
# a blank gets its quotes, a directory its backslash, a name behind a
# redirection completes, and so does a command name.
#   Set by tools/wine-run: DISPLAY, WINE_PID, OMB_SCRATCH.
set -u

. "$(dirname "$0")/driver_helpers.sh"

: >"$OMB_SCRATCH/my file.txt"
mkdir -p "$OMB_SCRATCH/Program Files"
: >"$OMB_SCRATCH/Program Files/inner.txt"
: >"$OMB_SCRATCH/fox.txt"

window=$(find_window '^Ombrel' "$WINE_PID") || { echo "no main window"; exit 1; }
sleep 2
xdotool windowfocus --sync "$window"

tab_then() {
    xdotool type --delay 40 "$1"
    xdotool key Tab
    sleep 0.3
    xdotool type --delay 40 "$2"
    xdotool key Return
    sleep 0.5
}

# dir /b "my file.txt" >o1.txt
tab_then 'dir /b my' '>o1.txt'
expect_text o1.txt 'my file.txt' "a file with a blank"
# dir /b "Program Files\" >o2.txt
tab_then 'dir /b pro' '" >o2.txt'
expect_text o2.txt 'inner.txt' "a directory"
# echo x >fox.txt
tab_then 'echo fine >fo' ''
expect_text fox.txt fine "a name behind a redirection"
# history >o3.txt
tab_then 'histo' '>o3.txt'
expect_text o3.txt 'echo fine' "a command name"

line 'exit'
wait_end "$WINE_PID" || { echo "exit typed, but the program is still running"; exit 1; }
