# The manual has a page for each program and command; the pages are valid and name every option.
. "$PROMISES/promises.sh"
mkdir man1
"$TARNWICK" --manual man1 || complain 'no pages' --manual
{ "$TARNWICK" help | sed -nE 's/^  ([a-z][a-z-]*( [a-z]+)?)  .*/\1/p'; echo player; } >commands
while read -r command; do
    page=man1/tarnwick-$(echo "$command" | tr ' ' -).1
    [ -f "$page" ] || complain "no page of $command" --manual
    grep -q '^\.SH EXAMPLES' "$page" || complain "no example of $command" --manual
    [ "$command" = player ] || "$TARNWICK" help $command | sed -n 's/^  \(-[a-zA-Z-]*\).*/\1/p' |
        while read -r option; do
            sed 's/\\-/-/g' "$page" | grep -q -e "^.fB$option.fR" || echo "$command: no $option"
        done >out
    have ! -s out
done <commands
for variable in $(grep -ho 'getenv("TARNWICK_[A-Z_]*' -r "$PROMISES/../../Tarnwick"* "$PROMISES/../../programs" \
    "$PROMISES/../../saver" "$PROMISES/../../player" | sed 's/.*"//' | sort -u); do
    grep -q "^.fB$variable.fR" man1/tarnwick.1 || complain "no $variable in the manual" --manual
done
grep -q '^.fBtarnwick..player.fR(1)' man1/tarnwick-play.1 || complain 'tarnwick-play does not refer to tarnwick-player' --manual

: >out
if command -v man >met; then
    for page in man1/*.1; do
        LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>>out >met
    done
    have ! -s out
    LC_ALL=C MANPATH="$folder" man -P cat tarnwick-export >out 2>err || complain 'man finds no page'
    grep -q 'tarnwick export .*EPISODE' out || complain 'another page'
else
    echo 'man is not installed; the pages are not formatted.'
fi
if command -v mandoc >met; then
    mandoc -T lint -W warning man1/*.1 >out 2>err || complain 'mandoc warns'
else
    echo 'mandoc is not installed and is left out.'
fi
finish
