# An episode becomes a movie; an error is one sentence and leaves no file.
. "$PROMISES/promises.sh"
moving() {
    echo '// @param level 0.5 0 1'
    echo 'float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {'
    echo '    return float4(fract(u.time * 0.1), p.level, uv.x, 1.0); }'
}
hearing() {
    echo '// @param level 0 0 1'
    echo 'float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {'
    echo '    return float4(0.0, in.audio.w, 0.0, 1.0); }'
    echo 'float2 sound(float t, constant Params& p) { return p.level * sin(t * 2000.0); }'
}
sounding='float2 sound(float t, constant Params& p) { return float2(sin(t * 2000.0), 0.1); }'
moving >e.metal
(moving && echo "$sounding") >s.metal
small='--size 32x18 --preset site'
expect 2 '^tarnwick: -o OUT is required: the movie' export e.metal
expect 2 '^tarnwick: --preset must be a name that tarnwick presets lists, not "nosuch".$' export e.metal -o a.mp4 --preset nosuch
expect 2 'preset site writes files that end in .mp4, not "a.mov"' export e.metal -o a.mov
for size in 31x18 32x17 0x0 -2x4 8x8 99999x2 32; do
    expect 2 'size must be ' export e.metal -o a.mp4 --size $size
done
for preset in main4k hevcalpha; do
    for size in 16x16 48x64 64x30; do
        file=a.mp4
        [ $preset = main4k ] || file=a.mov
        expect 2 "A movie in HEVC has at least 50 x 32 pixels, not ${size%x*} x ${size#*x}" \
            export e.metal -o $file --preset $preset --size $size
    done
done
for duration in 0 -1 nan inf 1e9 long ''; do
    expect 2 ' seconds' export e.metal -o a.mp4 --duration "$duration"
done
for length in inf 1e9; do
    (echo "// @length $length" && moving) >endless.metal
    expect 2 "The movie would be .* s long; it must be above 0 s and at most 86400 s" export endless.metal -o a.mp4
done
for option in '--start -1' '--loop -1' '--loop nan' '--find-loop 1:x' '--bitrate 0' '--set speed=1' \
    '--set level=x' '--keys e.metal' '--frames 7..300' '--frames 300..300' \
    '--frames 0..299' '--frames 300' '--frames 0..601 --duration 20' '--find-loop 2 --duration 2'; do
    # shellcheck disable=SC2086
    expect 2 '' export e.metal -o a.mp4 $option
done
expect 1 'e.metal has no sound' export e.metal -o a.mp4 --sound
expect 1 'none/a.mp4 cannot be written: No such file' export e.metal -o none/a.mp4
mkdir locked && chmod a-w locked
[ -w locked ] || expect 1 'locked/a.mp4 cannot be written: Permission' export e.metal -o locked/a.mp4
have ! -e a.mp4
{ "$TARNWICK" devices && command -v ffprobe && command -v ffmpeg; } >out 2>err || exit 77
(moving && echo 'float x = y;') >bad.metal
"$TARNWICK" export bad.metal -o bad.mp4 2>err
have $? = 1
grep -q '^bad.metal:4:11: error: ' err || complain 'nothing about the mistake' export
(moving && echo 'float2 sound(float t, constant Params& p) { return sqrt(0.5 - t); }') >nan.metal
expect 1 'The sound of nan.metal is not a finite number at 0.5' export nan.metal -o bad.mp4 --duration 1
have ! -e bad.mp4
cat >cloud.metal <<'TEXT'
// @particles 4
struct Particle { float2 at; };
Particle spawn(uint id, constant Params& p) { Particle q; q.at = 0.5; return q; }
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {}
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return float3(q.at, 0.1); }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return 1.0; }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails t) { return t.at(uv); }
TEXT
expect 1 'has movies up to 71582788 seconds' export cloud.metal -o bad.mp4 --start 1e9
expect 1 'is a particle episode' export cloud.metal -o bad.mp4 --find-loop 2
have ! -e bad.mp4
# field NAME FILE: of its pictures.
field() { ffprobe -v error -select_streams v -show_entries "stream=$1" -of csv=p=0 "$2" | tr -d ,; }
# shellcheck disable=SC2086
{
    expect 0 '' export s.metal -o a.mp4 $small --duration 0.51 --start 2 --set level=0.25
    [ "$(field nb_frames a.mp4) $(field width a.mp4) $(field codec_name a.mp4)" = '15 32 h264' ] ||
        complain 'another movie' export
    # 0.51 seconds are 15 frames at 30 a second.
    grep -q '^a.mp4: 15 frames, 0.5 s, [0-9.]* [kM]B, made in [0-9.]* s.$' out ||
        complain 'nothing about what was made' export
    expect 0 '' export s.metal -o draft.mp4 --size 66x36 --duration 0.5 --draft
    [ "$(field nb_frames draft.mp4) $(field width draft.mp4) $(field height draft.mp4)" = '15 32 18' ] ||
        complain 'another draft' export
    expect 0 '' export s.metal -o silent.mp4 $small --duration 0.1 --no-sound
    [ "$(ffprobe -v error -show_entries stream=codec_name -of csv=p=0 silent.mp4)" = h264 ] ||
        complain 'sound that was not wanted' export
    # Without --duration the episode's own length, or ten seconds.
    (echo '// @length 0.4' && moving) >short.metal
    expect 0 '' export short.metal -o short.mp4 $small
    have "$(field nb_frames short.mp4)" = 12
    expect 0 '' export e.metal -o ten.mp4 $small
    have "$(field nb_frames ten.mp4)" = 300
    # Its clock comes back after ten seconds.
    expect 0 '' export e.metal -o loop.mp4 $small --find-loop 10:0.1
    have "$(field nb_frames loop.mp4)" = 300
    grep -q '^The loop takes 10 seconds: 300 frames, ' out || complain 'no length of the loop' export
    # A crossfade uses what lies before the beginning, which is never before time 0.
    expect 0 '' export s.metal -o cross.mp4 $small --duration 0.4 --loop 9 --start 0.1
    grep -q '^tarnwick: The loop starts at 0.2 s, not at 0.1 s' err || complain 'silent' export
    echo '{"tracks":{"level":[{"time":0,"value":0,"ease":"linear"},{"time":1,"value":1,"ease":"hold"}]}}' >keys.json
    expect 0 '' export e.metal -o keys.mp4 $small --keys keys.json --duration 0.6
    hearing >hears.metal
    expect 0 '' export hears.metal -o silence.mp4 $small --keys keys.json --duration 0.6
    expect 0 '' export hears.metal -o heard.mp4 $small --set level=1 --duration 0.6
}
green() {
    ffmpeg -v error -i "$1" -vf "select=eq(n\,$2)" -frames:v 1 -f rawvideo -pix_fmt rgb24 - |
        head -c 2 | tail -c 1 | od -An -tu1 | awk -v wanted="$3" '{ exit ($1 - wanted) ^ 2 > 25 }' ||
        complain "frame $2 of $1 is not as green as $3" export
}
green a.mp4 0 64
green keys.mp4 15 127
# It hears the movie's sound, which keys do not change.
green silence.mp4 15 0
green heard.mp4 15 255
# Chapters and another frame rate.
echo '{"duration":2,"chapters":[{"at":1,"title":"Two","settings":""},{"at":0,"title":"One","settings":""}]}' >list.json
expect 0 'c.mp4: 24 frames, 2 s' export s.metal -o c.mp4 --duration 2 --size 32x32 --fps 12 --chapters list.json
[ "$(ffprobe -v error -show_entries chapter=start_time:chapter_tags=title -of csv=p=0 c.mp4 | tr '\n' ' ')" = '0.000000,One 1.000000,Two ' ] ||
    complain 'other chapters' export
expect 2 'The chapter "Two" starts at 1 s, outside the movie of 1 s' export s.metal -o c.mp4 --duration 1 --chapters list.json
expect 2 's.metal holds no chapters: The text is not JSON' export s.metal -o c.mp4 --chapters s.metal
# A file that cannot grow stands for a full disk.
cp a.mp4 before.mp4
(trap '' XFSZ && ulimit -f 16 && "$TARNWICK" export s.metal -o a.mp4 --duration 1 --size 320x180) 2>err
have $? = 1
grep -q '^tarnwick: Writing the video failed: File too large$' err || complain 'another sentence' export
# An export that is broken off leaves an older movie, and nothing else.
"$TARNWICK" export s.metal -o a.mp4 --duration 60 2>err &
process=$!
tries=0
until ls a.mp4.*partial >out 2>&1 || [ "$tries" = $((100 * ${TARNWICK_PATIENCE:-1})) ]; do
    sleep 0.1
    tries=$((tries + 1))
done
kill -TERM $process # a shell keeps SIGINT from what runs beside it
wait $process
have $? = 143 # by the signal, as a shell expects
grep -q '^tarnwick: Export cancelled\.$' err || complain 'not said to be cancelled' export
cmp -s a.mp4 before.mp4 || complain 'an older movie is changed' export
have "$(ls ./*partial 2>out | wc -l)" = 0
finish
