# No command replaces an input or a file of another kind; - is standard output; the next run removes
# the remains of a killed one.
. "$PROMISES/promises.sh"
(episode && echo 'float2 sound(float t, constant Params& p) { return float2(0.1 * p.red); }') >e.metal
echo '{"tracks":{}}' >keys.json
cp e.metal before.metal
# hidden FILE: an episode under the name of FILE, once as itself, once as a copy.
hidden() {
    for way in 'ln -s' ln cp; do
        $way e.metal "$1"
        said=$([ "$way" = cp ] && echo 'already exists and is not replaced' || echo 'are the same file')
        shift
        expect 2 "$said" "$@" "$output"
        set -- "$output" "$@"
        rm "$1"
    done
}
for output in a.png a.PNG; do
    hidden $output still e.metal -o
    hidden $output sheet e.metal -o
    hidden $output spectrum e.metal --time 1 -o
    hidden $output variations e.metal --seed 1 --count 1 --sheet
done
output=a.wav && hidden $output sound e.metal -o
output=a.mp4 && hidden $output export e.metal -o
hidden $output variations e.metal --seed 1 --count 1 -o
hidden $output walkthrough e.metal -o
hidden $output join e.metal -o
output=a.mov && hidden $output export e.metal --preset prores422 -o
output=a.spv && hidden $output msl e.metal -o
ln keys.json keys.png
expect 2 'keys.png and keys.json are the same file' still e.metal --keys keys.json -o keys.png
expect 2 'keys.json already exists .* no chapter list' \
    variations e.metal --seed 1 --count 1 -o a.mp4 --chapters keys.json
expect 2 'e.json is the settings document of e.metal; the chapters' \
    variations e.metal --seed 1 --count 1 -o a.mp4 --chapters ./e.json
mkdir pages && cp e.metal pages/stage-01-page-01.png
expect 2 'page-01.png already exists' walkthrough e.metal --pages pages
expect 2 'e.metal already exists and is not a folder' walkthrough e.metal --pages e.metal
for command in still sheet sound export; do
    expect 2 'writes files that end in' $command e.metal -o e.metal
done
expect 2 'writes files that end in .metal' new E -o e.png
expect 2 'can be standard output' variations e.metal --seed 1 --count 1 --sheet - --json
cmp -s e.metal before.metal || complain 'the episode is changed' still
if command -v script >out 2>err; then
    script -qec "$TARNWICK still e.metal -o -" /dev/null >out 2>&1 </dev/null
    grep -q 'Standard output is a terminal' out || complain 'a picture on a terminal' still
fi
expect 0 '^// @episode 1 A$' new A -o -
"$TARNWICK" devices >out 2>err || exit 77
# same WORD...: standard output is what -o writes; "$1" is the file's name.
same() {
    file=$1
    shift
    expect 0 '' "$@" -o "$file"
    expect 0 '' "$@" -o -
    cmp -s out "$file" || complain 'something else on standard output' "$@"
}
same b.png still e.metal --size 64x36
expect 0 '' still e.metal --size 64x36 -o b.png # a picture in a picture's place
same b.wav sound e.metal --duration 0.1
same b-spectrum.png spectrum e.metal --time 1 --duration 0.1
command -v ffprobe >out && same b.mp4 export e.metal --size 64x36 --duration 0.1
"$TARNWICK" still e.metal --size 64x36 -o - 2>err >/dev/full
have $? = 1
ln e.metal again.png
expect 2 'again.png and e.metal are the same file' saver e.metal --offscreen 0.1 -o again.png
expect 2 'none.metal is not a file that can be read' saver none.metal --offscreen 0.1 -o new.png
# The temporary folder beside the output is removed, however its writer ends.
"$TARNWICK" export e.metal --preset site --duration 60 -o c.mp4 >out 2>err &
process=$!
tries=0
until [ -e c.mp4.$process.partial/c.mp4 ] || [ $tries = 100 ]; do
    sleep 0.1
    tries=$((tries + 1))
done
mkdir mine.partial
expect 0 '' still e.metal --size 64x36 -o d.png
have -e c.mp4.$process.partial/c.mp4
kill -KILL $process
wait $process 2>err
have -e c.mp4.$process.partial
expect 0 '' still e.metal --size 64x36 -o d.png
have "$(echo ./*.partial)" = ./mine.partial
finish
