# Shared by the xdotool drivers: finding a window of the program, typing a
# line, and waiting for a file the program should write.

# The id of the first window whose name matches, while process pid runs.
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

# Types a line and Enter, then gives the output time to be drawn.
line() {
    xdotool type --delay 40 "$1"
    xdotool key Return
    sleep 0.5
}

# Waits for process pid to end; false when it does not.
wait_end() {
    for _ in $(seq 150); do
        kill -0 "$1" 2>/dev/null || return 0
        sleep 0.2
    done
    return 1
}

# Waits until the scratch file holds the text; fails the driver with the
# message otherwise.
expect_text() {
    for _ in $(seq 50); do
        grep -q "$2" "$OMB_SCRATCH/$1" 2>/dev/null && return 0
        sleep 0.2
    done
    echo "$3: $1 does not hold $2: $(head -c 300 "$OMB_SCRATCH/$1" 2>&1)"
    exit 1
}
