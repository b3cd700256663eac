# The movie of a walkthrough shows each stage beside its pages, for as long as it has pages, and has the
# stages as chapters and the episode's sound.
. "$PROMISES/promises.sh"
{ "$TARNWICK" devices && command -v ffprobe && command -v ffmpeg; } >out 2>err || exit 77
shade='float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {'
cat >1.metal <<TEXT
// A red field
$shade
    return float4(1.0, 0.0, 0.0, 1.0);
}
TEXT
# Twenty new lines are two pages. The picture tells the running time.
{
    echo '// @final Brighter'
    seq -f 'constant float a%g = 1.0;' 20
    echo "$shade"
    echo '    return float4(0.0, 1.0, fract(u.time), 1.0);'
    echo '}'
    echo 'float2 sound(float t, constant Params& p) { return fract(t); }'
} >e.metal
movie='walkthrough e.metal --stages 1.metal -o a.mp4 --size 320x180'
# 0.11 s are 3 frames of 30 a second; the second stage begins at the fourth.
expect 0 '' $movie --page-seconds 0.11 --start 0.5
ffprobe -v error -show_entries chapter=start_time:chapter_tags=title -of compact=p=0:nk=1 a.mp4 >met
printf '0.000000|A red field\n0.100000|Brighter\n' | cmp -s met - || complain "$(cat met)" walkthrough
ffmpeg -v error -i a.mp4 -f rawvideo -pix_fmt rgb24 frames
have "$(wc -c <frames)" = $((320 * 180 * 3 * 9))
# Bytes of a frame, from those before on.
bytes() { tail -c +$((320 * 180 * 3 * $1 + $2 + 1)) frames | head -c "$3"; }
near() { # FRAME RED GREEN BLUE: the picture's first pixel
    bytes "$1" 0 3 | od -An -tu1 | awk -v want="$2 $3 $4" '{ split(want, w)
        for (i = 1; i < 4; i++) if (($i - w[i]) ^ 2 > 64) exit 1 }' ||
        complain "frame $1 begins with$(bytes "$1" 0 3 | od -An -tu1)" walkthrough
}
near 0 255 0 0
near 2 255 0 0
near 3 0 255 153 # at 0.6 s
near 8 0 255 196
# The words beside it change where a page turns, and stand otherwise but for the codec's noise.
changed() { # FRAME: how many bytes of it differ by 32 from those of the one before
    for frame in $(($1 - 1)) "$1"; do
        bytes "$frame" 0 172800 | od -An -v -tu1 -w960 | cut -c 1600- >"words-$frame"
    done
    paste -d ' ' "words-$(($1 - 1))" "words-$1" |
        awk '{ n = NF / 2; for (i = 1; i <= n; i++) if (($i - $(i + n)) ^ 2 > 1024) sum++ }
             END { print sum + 0 }'
}
for frame in 1 2 4 5 7 8; do
    have "$(changed $frame)" -lt 200
done
for frame in 3 6; do
    have "$(changed $frame)" -gt 1000
done
ffmpeg -v error -i a.mp4 -map 0:a -t 0.001 -f f32le - | head -c 4 | od -An -tf4 |
    awk '{ exit ($1 - 0.5) ^ 2 > 0.01 }' || complain 'the sound does not begin at 0.5 s' walkthrough

for wrong in '--page-seconds 0' '--page-seconds nan' '--page-seconds 1e9' '--start -1' '--size 320x100' \
    '--json' '--pages folder' '--preset prores422' '-o a.mov'; do
    # shellcheck disable=SC2086
    expect 2 '' $movie $wrong
done
sed 's/float4(1/float5(1/' 1.metal >bad.metal
cp a.mp4 before.mp4
expect 1 'Stage 2, bad.metal, does not compile: line 3: ' \
    walkthrough e.metal --stages 1.metal bad.metal -o a.mp4
cmp -s a.mp4 before.mp4 || complain 'an older movie is changed' walkthrough
finish
