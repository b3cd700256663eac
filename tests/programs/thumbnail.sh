# A file manager gets a thumbnail by the line of the thumbnailer, in a file of any name that exists
# already, and never waits for long.
. "$PROMISES/promises.sh"
"$TARNWICK" devices >out 2>err || exit 77
episode >'my rose.metal'
line=$(sed -n 's/^Exec=tarnwick //p' "$PROMISES/../../desktop/tarnwick.thumbnailer")
: >thumbnail.tmp
for word in $line; do
    case $word in %s) word=128 ;; %o) word=$folder/thumbnail.tmp ;; %i) word="$folder/my rose.metal" ;; esac
    set -- "$@" "$word"
done
exec 3<thumbnail.tmp # a file manager may keep it open
expect 0 '' "$@"
cmp -s thumbnail.tmp - <&3 || complain 'the file is another one' thumbnail
ffprobe -v error -show_entries stream=codec_name,width,height -of csv=p=0 thumbnail.tmp >out
have "$(cat out)" = png,128,72
"$TARNWICK" still 'my rose.metal' -o still.png --size 128x72 && cmp -s still.png thumbnail.tmp ||
    complain 'another picture than the still' thumbnail

# Days of steps.
"$TARNWICK" new Slow --particles -o swarm.metal >out && sed 's/@still .*/@still 900000/' swarm.metal >slow.metal
grep -q '@still 900000' slow.metal || { echo '// @still 900000'; cat swarm.metal; } >slow.metal
begin=$(date +%s)
expect 1 'takes longer than 1.5 seconds' thumbnail slow.metal -o slow.tmp --limit 1.5
have $(($(date +%s) - begin)) -le 10
have ! -e slow.tmp
echo 'kernel void add() {}' >other.metal
expect 1 '' thumbnail other.metal -o other.tmp
cp 'my rose.metal' kept
expect 2 '' thumbnail 'my rose.metal' -o kept
cmp -s kept 'my rose.metal' || complain 'a file was replaced' thumbnail
finish
