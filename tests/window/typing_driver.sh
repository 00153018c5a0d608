#!/usr/bin/env bash
# Plays the user at the real window program under the private X server:
# types echo hello>out.txt and a few commands that print in colour, then exit
# and Enter, through the keyboard, and checks the file and that the program
# ended by itself.
set -u

driver_name=typing_driver
source "$(dirname "$0")/driver_common.sh"

# Pixels of an exact colour in a picture.
pixels_of() {
    convert "$1" -fill black +opaque "$2" -fill white -opaque "$2" -format '%[fx:int(mean*w*h+0.5)]' info:
}

find_window
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

exit_program
