# Variations are listed, and their sheet shows each at its start with its values.
. "$PROMISES/promises.sh"
(echo '// @length 20
// @variation 5
// @variations 3, 1' && episode | sed 's/0.0, 1.0/u.time * 0.05, 1.0/') >e.metal
# The same numbers, whether the header, the options or a longer series lists them.
expect 0 '^3  *[0-9.]* s  *\(red\|green\) ' variations e.metal --seed 5
tail -n 2 out | tr -s ' ' | sort >header
expect 0 '' variations e.metal --seed 5 --from -1 --count 6 --length=2e1 --duration 5 --spread 0.5
[ "$(wc -l <out)" = 7 ] && grep -q '^-1 ' out && grep '^[13] ' out | tr -s ' ' | cmp -s - header ||
    complain 'not the variations of the header' variations
expect 0 '"highlights": ""' variations e.metal --seed 18446744073709551615 --spread 0 --json
grep -q '"red": 0.25' out || complain 'a spread of 0 changes values' variations

for wrong in '--seed=-1' '--seed=18446744073709551616' '--count=0' '--count=-1' '--count=1e3' \
    '--count=99999999' '--from=x' '--from=9223372036854775807 --count=2' '--length=0' \
    '--length=nan' '--duration=inf' '--duration=1e9' '--spread=1.5' '--spread=nan' '--sheet='; do
    expect 2 "${wrong%%=*} must be" variations e.metal --seed 1 --count 1 $wrong
done
expect 2 '^tarnwick: --seed N is required' variations e.metal --count 1
(echo '// @length inf' && episode) >endless.metal
expect 2 'The @length of endless.metal must be .*, not inf; --length replaces it' \
    variations endless.metal --seed 1 --count 1
expect 2 'endless.metal has no @variations' variations endless.metal --seed 1 --length 9
expect 1 '^tarnwick: none/a.png cannot be written: No such file or directory.$' \
    variations e.metal --seed 1 --sheet none/a.png
ln -s /dev/full full.png
expect 2 '^tarnwick: full.png is not a regular file and is not replaced.$' \
    variations e.metal --seed 1 --sheet full.png

# The sheet is the one of episodes that have a variation's values as defaults, its start as the time
# of their still and its highlights as title.
"$TARNWICK" devices >out 2>err || exit 77
series='--seed 5 --from 3 --count 2 --spread 1'
expect 0 '' variations e.metal $series --sheet variations.png --size 320x36 --columns 5
[ -s out ] && complain 'a list beside the sheet' variations
for index in 3 4; do
    line=$("$TARNWICK" variations e.metal $series | grep "^$index" | sed 's/   */|/g')
    value() { echo "$line" | sed "s/.*$1 \([0-9.]*\).*/\1/"; }
    (echo "// @episode $index $(echo "$line" | cut -d '|' -f 3)"
        echo "// @still $(echo "$line" | cut -d '|' -f 2 | tr -d ' s')"
        sed "s/red 0.25/red $(value red)/; s/green 0.5/green $(value green)/" e.metal) >$index.metal
done
expect 0 '' sheet 3.metal 4.metal -o sheet.png --size 320x36
cmp -s variations.png sheet.png || complain 'not the stills of the variations' variations
expect 2 'sheet would have' variations e.metal --seed 5 --count 2000 --sheet none.png
(episode && echo 'float x = y;') >bad.metal
expect 1 '^tarnwick: bad.metal does not compile.$' variations bad.metal --seed 1 --count 1 \
    --sheet none.png
have ! -e none.png
finish
