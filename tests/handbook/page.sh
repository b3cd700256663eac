# page.sh PAGE.md: does what a page of the handbook says, in order, in a folder of its own.
#
# A block of code below a line "<!-- file NAME -->" is written into that file. In other blocks a line
# that begins with "$ " is a command; the lines after it are its output, where a line "..." is any
# number of lines. A block without either is ignored.
#
# tarnwick is the program that TARNWICK names; pictures and movies are small here. With PICTURES=FOLDER
# pictures have their own sizes, and each PNG file whose name a picture of the page has is copied
# there as JPEG.
page=$(realpath "$1")
. "$PROMISES/promises.sh"
. "$PROMISES/local-service.sh"
"$TARNWICK" devices >out 2>err || exit 77
serve
echo approved >service/polls
: "${LOCAL_SERVICE:?}"

mkdir steps bin work
awk '
    function close_block() { if (file) close(file); file = ""; kind = "" }
    /^<!-- file / { name = $3; next }
    /^    / {
        text = substr($0, 5)
        if (!kind) {
            kind = name != "" ? "file" : text ~ /^\$ / ? "commands" : "other"
            file = sprintf("steps/%03d.%s", ++count, kind)
            if (kind == "file") print name > (file ".name")
            name = ""
        }
        while (blanks > 0) { print "" > file; blanks-- }
        print text > file
        next
    }
    /^$/ { if (kind) blanks++; next }
    { close_block(); blanks = 0 }
' "$page"

# The program of the commands. A small size is appended: the last value of an option counts.
cat >bin/tarnwick <<'TEXT'
#!/bin/sh
if [ "$1" = play ]; then # shown until the end of the page, with an output of its own
    [ -x "$(dirname "$TARNWICK")/tarnwick-player" ] || exit 0
    echo $$ >"$PLAYER"
    QT_QPA_PLATFORM=offscreen exec "$TARNWICK" "$@" >"$PLAYER.log" 2>&1
fi
case $1 in
still | sheet | variations) [ -n "${PICTURES:-}" ] || set -- "$@" --size 64x36 ;;
share) set -- "$@" --size 64x36 ;;
export) set -- "$@" --size 64x36 --duration 1 ;;
esac
exec "$TARNWICK" "$@"
TEXT
chmod +x bin/tarnwick
PATH="$folder/bin:$PATH"
export PLAYER="$folder/player"

# matches WANTED MET: the lines are the same, but for lines "..." in WANTED.
matches() {
    awk '
        NR == FNR { wanted[++count] = $0; next }
        { met[++lines] = $0 }
        function fits(w, m) {
            if (w > count) return m > lines
            if (wanted[w] == "...") return fits(w + 1, m) || (m <= lines && fits(w, m + 1))
            return m <= lines && wanted[w] == met[m] && fits(w + 1, m + 1)
        }
        END { exit !fits(1, 1) }
    ' "$1" "$2"
}

# The status of a command is 0, unless the page shows an error.
try() {
    (cd work && sh -c "$1") >met 2>&1
    status=$?
    wanted=0
    grep -q ': error: ' expected && wanted=1
    [ $((status != 0)) = $wanted ] || complain "status $status" "$1"
    [ ! -s expected ] || matches expected met || {
        complain 'another output than on the page:' "$1"
        cat met
    }
}

# do_commands FILE: each command with the lines after it.
do_commands() {
    command=
    : >expected
    while IFS= read -r line; do
        case $line in
        '$ '*)
            [ -z "$command" ] || try "$command"
            command=${line#??}
            commands=$((commands + 1))
            : >expected
            ;;
        *) printf '%s\n' "$line" >>expected ;;
        esac
    done <"$1"
    try "$command"
}

# A player that the page has opened still runs after two more blocks of commands. It takes time from
# the others, so it is ended then.
blocks=0
end_player() {
    [ ! -s player ] || kill "$(cat player)" || complain 'the player has ended' play
    rm -f player
}

commands=0
for step in steps/*; do
    case $step in
    *.file) cp "$step" "work/$(cat "$step.name")" ;;
    *.commands)
        [ ! -s player ] || blocks=$((blocks + 1))
        do_commands "$step"
        [ $blocks != 2 ] || end_player
        ;;
    esac
done
end_player
[ $commands -gt 0 ] || complain 'the page has no command' "$page"

# Each picture of the page is one that a command has made.
for picture in $(grep -o '](tutorial/[a-z-]*\.jpg)' "$page" | sed 's/.*\///; s/\..*//'); do
    have -s "work/$picture.png"
    if [ -n "${PICTURES:-}" ]; then
        ffmpeg -v error -y -i "work/$picture.png" -q:v 4 "$PICTURES/$picture.jpg"
    fi
done
finish
