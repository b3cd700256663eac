# An episode hears a sound file, which the movie has too; a performance names its inputs.
. "$PROMISES/promises.sh"
hearing() {
    echo 'float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {'
    echo "    return float4($1, 1.0); }"
}
hearing 'float3(in.audio.w > 0.1)' >e.metal
episode >deaf.metal
(episode && echo 'float2 sound(float t, constant Params& p) { return t < 1.0 ? 0.0 : 0.5 * sin(3000.0 * t); }') >tone.metal
expect 1 'deaf.metal does not hear a sound file' still deaf.metal -o a.png --audio deaf.metal
expect 2 'none.wav' export e.metal -o a.mp4 --audio none.wav
expect 2 'requires --audio' export e.metal -o a.mp4 --track own
{ "$TARNWICK" devices && command -v ffmpeg; } >out 2>err || exit 77
expect 2 'The sound of "e.metal" cannot be read' export e.metal -o a.mp4 --audio e.metal
expect 0 '' sound tone.metal -o song.wav --duration 2
# In the second half of each repetition.
pixel() { ffmpeg -v error -i "$1" -f rawvideo -pix_fmt rgb24 - | od -An -tu1 -N1 | xargs; }
for row in '0.5 0' '1.5 255' '2.9 0' '3.5 255'; do
    # shellcheck disable=SC2086
    set -- $row
    expect 0 '' still e.metal -o a.png --size 2x2 --time "$1" --audio song.wav
    [ "$(pixel a.png)" = "$2" ] || complain "$(pixel a.png) at $1" still
done
# A damaged head, and a stream whose form changes.
{ head -c 24 song.wav && printf '\200\273\000\100' && tail -c +29 song.wav; } >fast.wav
expect 2 'its sample rate is 1073789824 Hz, not one of 1000 to 3072000' still e.metal -o a.png --audio fast.wav
ffmpeg -v error -i song.wav -ac 1 -ar 22050 mono.mp3
ffmpeg -v error -i song.wav stereo.mp3
cat mono.mp3 stereo.mp3 >both.mp3
for time in 0.5 1.9 2.2 3.7; do
    expect 0 '' still e.metal -o a.png --size 2x2 --time $time --audio both.mp3
done
# The movie is as long as the file, whose sound it has.
loudness() { ffmpeg -ss "$2" -t 0.8 -i "$1" -af volumedetect -f null - 2>&1 | sed -n 's/.*mean_volume: -*\([0-9]*\).*/\1/p'; }
tracks() { ffprobe -v error -show_entries stream=codec_type -of csv "$1" | grep -c audio; }
expect 0 '60 frames, 2 s' export e.metal -o a.mp4 --size 32x18 --audio song.wav
[ "$(loudness a.mp4 0.1)" -gt 50 ] && [ "$(loudness a.mp4 1.1)" -lt 12 ] || complain 'not the sound of the file' export
expect 0 '' export e.metal -o b.mp4 --size 32x18 --audio song.wav --track own
expect 0 '' export e.metal -o c.mp4 --size 32x18 --audio song.wav --no-sound
[ "$(tracks a.mp4) $(tracks b.mp4) $(tracks c.mp4)" = '1 0 0' ] || complain 'wrong tracks' export
# A performance with inputs is the movie of the settings with these options.
ffmpeg -v error -y -f lavfi -i 'color=0x00ff00:s=4x4,format=rgb24' -frames:v 1 green.png
hearing 'in.channel(0, uv).rgb + float3(in.audio.w, 0.0, 0.0)' >e.metal
entry() { printf '{"input":"%s","file":"%s","bytes":%s,"sha256":"%s","played":true}' "$1" "$2" "$(wc -c <"$2")" "$(sha256sum <"$2" | cut -d' ' -f1)"; }
{
    echo '{"kind":"performance","version":1,"episode":{"title":"e","sha256":""},"settings":{"name":"","values":{},"keys":{"tracks":{}}},"clock":[0,0,1,true],"mouse":null,"inputs":['"$(entry 0 green.png),$(entry audio song.wav)"']}'
    echo '{"length":2,"remarks":[]}'
} >e.performance
expect 0 '' export e.metal -o a.mp4 --size 32x18 --performance e.performance
grep -q 'song.wav\|green.png' err && complain 'a sentence about an input' export
expect 0 '' export e.metal -o b.mp4 --size 32x18 --performance e.performance --channel 0=green.png --audio song.wav
cmp a.mp4 b.mp4 || complain 'not the inputs of the performance' export
# Changes of inputs: green until 1 s and then white; the file is heard and played from 2.5 s on, a level from 3 s on.
ffmpeg -v error -y -f lavfi -i 'color=white:s=4x4,format=rgb24' -frames:v 1 white.png
levels=$({ printf '\000\000\000\000\000\000\200\000' && head -c 256 /dev/zero; } | base64 -w0)
hearing 'in.channel(0, uv).rgb * float3(0.0, 0.0, 1.0) + float3(in.audio.w, in.channel(0, uv).g, 0.0)' >e.metal
{
    echo '{"kind":"performance","version":1,"episode":{"title":"e","sha256":""},"settings":{"name":"","values":{},"keys":{"tracks":{}}},"clock":[0,0,1,true],"mouse":null,"inputs":['"$(entry 0 green.png)"']}'
    echo '[1,"input",'"$(entry 0 white.png)]"
    echo '[2.5,"input",'"$(entry audio song.wav)]"
    echo '[3,"levels","'"$levels"'"]'
    echo '[3.5,"input",{"input":"0"}]'
    echo '{"length":4,"remarks":[]}'
} >changes.performance
rgb() { ffmpeg -v error -i "$1" -f rawvideo -pix_fmt rgb24 - | od -An -tu1 -N3 | xargs; }
for row in '0.9 0 255 0' '1.1 0 255 255' '3.4 128 255 255' '3.9 128 0 0'; do
    # shellcheck disable=SC2086
    set -- $row
    expect 0 '' still e.metal -o c.png --size 2x2 --time "$1" --performance changes.performance
    [ "$(rgb c.png)" = "$2 $3 $4" ] || complain "$(rgb c.png) at $1" still
done
for file in c d; do
    expect 0 '120 frames, 4 s' export e.metal -o $file.mp4 --size 32x18 --performance changes.performance
done
cmp c.mp4 d.mp4 || complain 'two exports of changed inputs differ' export
[ "$(loudness c.mp4 0.1)" -gt 50 ] && [ "$(loudness c.mp4 3.1)" -lt 12 ] || complain 'not the sound of the changed file' export
expect 0 '' still e.metal -o c.png --size 2x2 --time 1.1 --performance changes.performance --channel 0=green.png
[ "$(rgb c.png)" = '0 255 0' ] || complain "$(rgb c.png) with --channel" still
# The other commands take the file too; those that only draw need an episode that hears.
(cat e.metal && echo '// @param tone 1 0 2 Tone') >v.metal
expect 0 '' variations v.metal -o v.mp4 --seed 1 --count 1 --duration 2 --size 32x18 --audio song.wav
expect 0 '' variations v.metal -o u.mp4 --seed 1 --count 1 --duration 2 --size 32x18 --audio song.wav --track own
[ "$(tracks v.mp4) $(tracks u.mp4)" = '1 0' ] || complain 'wrong tracks' variations
expect 1 'deaf.metal does not hear a sound file' variations deaf.metal --sheet v.png --seed 1 --count 1 --audio song.wav
expect 0 '' walkthrough e.metal -o w.mp4 --size 640x360 --page-seconds 2 --audio song.wav
[ "$(loudness w.mp4 0.1)" -gt 50 ] && [ "$(loudness w.mp4 1.1)" -lt 12 ] || complain 'not the sound of the file' walkthrough
hearing 'float3(in.audio.w > 0.1)' | sed '1i // @still 1.5' >s.metal
expect 0 '' share s.metal --title S --preview shared --size 32x18 --audio song.wav
[ "$(rgb shared/thumb.jpg)" = '255 255 255' ] || complain "$(rgb shared/thumb.jpg) in the still" share
expect 1 'deaf.metal does not hear a sound file' share deaf.metal --title S --preview deaf --audio song.wav
echo more >>song.wav
rm green.png
expect 0 '' still e.metal -o a.png --size 2x2 --time 0.5 --performance e.performance
grep -q 'green.png of channel 0 is missing, so the input is black' err || complain 'nothing about green.png' still
grep -q 'song.wav of the sound input has changed since the performance' err || complain 'nothing about song.wav' still
[ "$(pixel a.png)" = 0 ] || complain 'the channel is not black' still
finish
