# Parts of a movie put together are the movie that is exported in one go; other parts are refused.
. "$PROMISES/promises.sh"
{ "$TARNWICK" devices && command -v ffmpeg; } >out 2>err || exit 77
cat >e.metal <<'TEXT'
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    return 0.9 * in.previous(uv) + 0.1 * float4(fract(uv + u.time), sin(u.time * 9.0), 1.0);
}
float2 sound(float t, constant Params& p) { return float2(sin(t * 2000.0), sin(t * 1000.0)); }
TEXT
hashes() {
    ffmpeg -v error -i "$1" -c copy -f framehash -
}
# Parts begin at multiples of ten seconds. Both codecs that look at other frames, and one that does not.
for format in 'site mp4' 'main4k mp4' 'prores4444 mov'; do
    preset=${format% *} ending=${format#* }
    size="--size 64x36 --preset $preset --fps 12"
    rate=12
    [ "$preset" = site ] && size="$size --loop 0.5" # whose sound has more before its first sample
    # shellcheck disable=SC2086
    {
        expect 0 '' export e.metal -o whole.$ending $size --duration 10.5
        expect 0 '' export e.metal -o 1.$ending $size --duration 10.5 --frames 0..$((10 * rate))
        expect 0 '' export e.metal -o 2.$ending $size --duration 10.5 --frames $((10 * rate))..
    }
    expect 0 '' join 1.$ending 2.$ending -o joined.$ending
    hashes whole.$ending >whole
    have -s whole
    hashes joined.$ending | cmp -s - whole || complain "another movie in $preset" join
done
expect 2 '2.mp4 begins at frame 120, not at frame 0' join 2.mp4 1.mp4 -o bad.mp4
expect 2 '' join 1.mp4 1.mov -o bad.mp4
expect 2 '' join 1.mp4 none.mp4 -o bad.mp4
expect 2 '1.mp4 is the input file' join 1.mp4 2.mp4 -o 1.mp4
head -c $(($(wc -c <2.mp4) - 9)) 2.mp4 >cut.mp4
expect 2 'cut.mp4 cannot be read as a movie: it is cut off' join 1.mp4 cut.mp4 -o bad.mp4
ffmpeg -v error -f lavfi -i testsrc2=size=64x36:rate=30000/1001 -frames:v 9 -pix_fmt yuv420p \
    -video_track_timescale 30000 ntsc.mp4
expect 2 'ntsc.mp4 cannot be read as a movie: its pictures are not one frame apart' \
    join ntsc.mp4 -o bad.mp4
expect 2 '^tarnwick: PART... is required.$' join -o bad.mp4
expect 2 'ends in .mp4 or .mov, not as "bad.avi" does' join 1.mp4 -o bad.avi
have "$(ls | grep -c bad)" = 0
finish
