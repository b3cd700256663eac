# The beginning of the tests that play on a display of their own: a folder with all that the player
# keeps of its user, and functions that wait and complain. A test begins with: . player.sh TOOL...
#
# PLAYER: the program. KEEP: a folder for the pictures; default: they are removed.
set -u
for tool in "$@" ffmpeg; do
    command -v "$tool" >/dev/null || { echo "$tool is missing"; exit 77; }
done

folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait 2>/dev/null; rm -rf "$folder"' EXIT
cd "$folder" || exit 1
mkdir -m 700 run
export XDG_STATE_HOME=$folder/state XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data
export XDG_RUNTIME_DIR=$folder/run HOME=$folder
unset DISPLAY WAYLAND_DISPLAY

failures=0
complain() {
    echo "$1"
    failures=$((failures + 1))
}

# comes SECONDS COMMAND...: the command succeeds within that time.
comes() {
    local end=$((SECONDS + $1))
    shift
    until "$@"; do
        [ $SECONDS -lt $end ] || return 1
        sleep 0.2
    done
}

# play EPISODE...: starts the player, whose process is $player.
play() {
    "$PLAYER" "$@" 2>said &
    player=$!
}

# finish STATUS: the player ends with it, and neither it nor the test has complained.
finish() {
    local status=0
    wait $player || status=$?
    [ $status = "$1" ] || complain "The player ends with status $status."
    [ ! -s said ] || { complain "The player said:"; cat said; }
    [ $failures = 0 ]
}
