#!/usr/bin/env bash
# Plays the user at the real window program under the private X server: a
# listing longer than the screen stops at "-- more --", a key gives the next
# page and Ctrl-C ends it; the wheel and the scroll bar show older rows and
# typing brings the live screen back; text selected with the mouse (drag,
# double click, triple click) is copied and pasted back at the prompt, where
# echo writes it to a file for checking.
set -u

driver_name=paging_driver
source "$(dirname "$0")/driver_common.sh"

# Pixels of an exact colour in a part (WxH+X+Y) of a picture.
pixels_in() {
    convert "$1" -crop "$2" +repage -fill black +opaque "$3" -fill white -opaque "$3" \
        -format '%[fx:int(mean*w*h+0.5)]' info:
}

fail() {
    shot failed
    echo "$1"
    exit 1
}

# The centre of a cell, in the window's pixels.
cell_x() { echo $(($1 * cw + cw / 2)); }
cell_y() { echo $(($1 * ch + ch / 2)); }

# Types "echo ", pastes with the middle button, and sends the line to a file.
paste_to() {
    xdotool type --delay 40 'echo '
    xdotool mousemove --window "$window" "$(cell_x 40)" "$(cell_y 3)" click 2
    sleep 0.3
    line ">$1"
}

# The first line of a file the shell wrote, without its CR.
written() { head -n 1 "$OMB_SCRATCH/$1" 2>/dev/null | tr -d '\r'; }

expect_file() {
    [ "$(written "$1")" = "$2" ] || fail "$1 holds '$(written "$1")', not '$2' ($3)"
}

find_window

seq -f 'row %g' 1 100 | sed 's/$/\r/' > "$OMB_SCRATCH/rows.txt"
# Two rows in bright red (an ANSI sequence in the file), for finding cells.
printf '\033[1;31malpha beta gamma\r\nsecond line here\033[0;37m\r\n' > "$OMB_SCRATCH/sel.txt"

# --- The cell size, from where the red text lies (rows 1 and 2, 16 cells) --
line 'cls'
line 'type sel.txt'
picture="$OMB_SCRATCH/cells.png"
capture "$picture" || fail "no picture of the window"
box=$(convert "$picture" -fill black +opaque '#FF0000' -trim -format '%w %h %X %Y' info:)
read -r bw bh bx by <<< "${box//+/}"
cw=$(((bw + 2) / 16))
ch=$(((by + bh + 4) / 3))
eval "$(xdotool getwindowgeometry --shell "$window")"
rows=$((HEIGHT / ch))
[ "$cw" -ge 5 ] && [ "$ch" -ge 8 ] && [ "$rows" -ge 20 ] || fail "cells of ${cw}x${ch}, $rows rows ($box)"

# --- Selection, copy and paste ---------------------------------------------
# A drag along row 1 over ten cells.
xdotool mousemove --window "$window" "$(cell_x 0)" "$(cell_y 1)" mousedown 1
for column in 2 5 9; do xdotool mousemove --window "$window" "$(cell_x $column)" "$(cell_y 1)"; sleep 0.1; done
xdotool mouseup 1
xdotool click 3
paste_to drag.txt
expect_file drag.txt 'alpha beta' "a drag over cells 0 to 9"

# A drag over two rows: only the first line arrives at the prompt.
xdotool mousemove --window "$window" "$(cell_x 6)" "$(cell_y 1)" mousedown 1
for column in 8 12 3 5; do xdotool mousemove --window "$window" "$(cell_x $column)" "$(cell_y 2)"; sleep 0.1; done
xdotool mouseup 1
xdotool click 3
paste_to rows2.txt
expect_file rows2.txt 'beta gamma' "a drag over two rows pastes its first line"

# A double click takes a word.
xdotool mousemove --window "$window" "$(cell_x 13)" "$(cell_y 1)" click --repeat 2 --delay 80 1
sleep 0.3
xdotool click 3
paste_to word.txt
expect_file word.txt 'gamma' "a double click on gamma"

# --- The pager ---------------------------------------------------------------
line 'cls'
line 'type rows.txt'
sleep 1
# The mark is in HighText (white) at the start of the bottom row.
capture "$OMB_SCRATCH/more1.png"
shot more
marked=$(pixels_in "$OMB_SCRATCH/more1.png" "$((10 * cw))x${ch}+0+$(((rows - 1) * ch))" '#FFFFFF')
[ "${marked:-0}" -gt 20 ] || fail "no -- more -- at the bottom row ($marked white pixels)"
xdotool key space
sleep 1
capture "$OMB_SCRATCH/more2.png"
marked=$(pixels_in "$OMB_SCRATCH/more2.png" "$((10 * cw))x${ch}+0+$(((rows - 1) * ch))" '#FFFFFF')
[ "${marked:-0}" -gt 20 ] || fail "no second -- more -- after a key ($marked white pixels)"
changed=$(compare -metric AE "$OMB_SCRATCH/more1.png" "$OMB_SCRATCH/more2.png" null: 2>&1)
[ "${changed%% *}" -gt 200 ] 2>/dev/null || fail "the key did not bring the next page ($changed pixels changed)"
xdotool key ctrl+c
sleep 1
shot broken
capture "$OMB_SCRATCH/broken.png"
marked=$(pixels_in "$OMB_SCRATCH/broken.png" "$((5 * cw))x${ch}+$((5 * cw))+$(((rows - 1) * ch))" '#FFFFFF')
[ "${marked:-1}" -eq 0 ] || fail "the mark stayed after Ctrl-C ($marked white pixels)"
# The last row shown is the last of the second page: the rest was dropped.
page=$((rows - 1))
xdotool mousemove --window "$window" "$(cell_x 3)" "$(cell_y $((rows - 2)))" click --repeat 3 --delay 80 1
sleep 0.3
xdotool click 3
paste_to last.txt
expect_file last.txt "row $((2 * page))" "the row above the prompt after Ctrl-C at the second page"

# --- Scrollback ----------------------------------------------------------------
# The paste line scrolled the screen by one: its top row is row page + 2.
top=$((page + 2))
# Two notches of the wheel (three rows each) and the bar's up arrow.
xdotool mousemove --window "$window" "$(cell_x 20)" "$(cell_y 10)" click 4 click 4
sleep 0.3
xdotool mousemove --window "$window" $((WIDTH - 6)) 6 click 1
sleep 0.3
shot scrolled
xdotool mousemove --window "$window" "$(cell_x 2)" "$(cell_y 0)" click --repeat 3 --delay 80 1
sleep 0.3
xdotool click 3
paste_to old.txt
expect_file old.txt "row $((top - 7))" "the top row seven rows up in history"
# Typing brought the live screen back: its top row moved on by one.
xdotool mousemove --window "$window" "$(cell_x 2)" "$(cell_y 0)" click --repeat 3 --delay 80 1
sleep 0.3
xdotool click 3
paste_to live.txt
expect_file live.txt "row $((top + 1))" "the live top row after typing"

exit_program
