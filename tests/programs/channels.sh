# Exports and stills show channels: pictures, the frame of each time of a movie, other episodes.
. "$PROMISES/promises.sh"
reading() {
    echo "float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {"
    echo "    return float4($1); }"
}
reading 'in.channel(0, uv).rgb, 1.0' >e.metal
reading 'in.channel(2, uv).g, u.time / 10.0, p.blue, 1.0' >inner.metal
sed -i '1i // @param blue 0 0 1' inner.metal
echo '{"name":"","values":{"blue":0.5},"keys":{"tracks":{}}}' >inner.json
reading 'in.channel(3, uv).rgb, 1.0' >outer.metal
episode >deaf.metal
for channel in '4=x.png' '0=' 'x' '0.=x.png' '03=x.png'; do
    expect 2 'which is not N=FILE' still e.metal -o a.png --channel "$channel"
done
expect 2 '/dev/video0 is a camera' still e.metal -o a.png --channel 0=/dev/video0
expect 2 'none.png is missing' export e.metal -o a.mp4 --channel 0=none.png
expect 1 'deaf.metal reads no channels' still deaf.metal -o a.png --channel 0=e.metal
expect 2 'no episode is given for channel 3' still outer.metal -o a.png --channel 3.2=e.metal
{ "$TARNWICK" devices && command -v ffmpeg; } >out 2>err || exit 77
echo text >text.png
expect 1 'text.png cannot be read' still e.metal -o a.png --channel 0=text.png
# Frame n of the movie has the luma 16 + 2 n; it has B-frames, 80 frames of 1/25 s, and repeats.
ffmpeg -v error -y -f lavfi -i "nullsrc=s=32x32:r=25:d=3.2,geq=lum='16+2*N':cb=128:cr=128" \
    -c:v mpeg4 -qscale:v 1 -g 30 -bf 2 clip.mp4
pixel() { ffmpeg -v error -i "$1" -f rawvideo -pix_fmt rgb24 - | od -An -tu1 -N3 | xargs; }
for time in 0 0.9 3.1 3.3 9.7; do
    expect 0 '' still e.metal -o a.png --size 2x2 --time $time --channel 0=clip.mp4
    frame=$(awk "BEGIN { print int($time % 3.2 * 25 + 0.001) }")
    found=$(awk "BEGIN { split(\"$(pixel a.png)\", p, \" \"); print int(p[1] * 219 / 510 + 0.5) }")
    [ "$found" = "$frame" ] || complain "frame $found instead of $frame at $time" still
done
# An episode that a channel shows has its settings, its channels and the same time.
ffmpeg -v error -y -f lavfi -i 'color=0x00ff00:s=4x4,format=rgb24' -frames:v 1 green.png
expect 0 '' still outer.metal -o a.png --size 2x2 --time 5 --channel 3.2=green.png --channel 3=inner.metal
[ "$(pixel a.png)" = '255 128 128' ] || complain "$(pixel a.png) is not the picture of the episode" still
# The same film each time, and in parts.
options='--preset site --size 32x32 --fps 30 --start 2 --duration 12 --channel 0=clip.mp4 --channel 3=inner.metal'
reading 'in.channel(0, uv).r, in.channel(3, uv).g, in.previous(uv).b + 0.01, 1.0' >e.metal
# shellcheck disable=SC2086
for file in a b; do expect 0 '360 frames' export e.metal -o $file.mp4 $options; done
cmp a.mp4 b.mp4 || complain 'two exports differ' export
# shellcheck disable=SC2086
{
    expect 0 '' export e.metal -o one.mp4 $options --frames 0..300
    expect 0 '' export e.metal -o two.mp4 $options --frames 300..
}
expect 0 '' join one.mp4 two.mp4 -o joined.mp4
frames() { ffmpeg -v error -i "$1" -map 0:v -c copy -f framehash -; }
frames joined.mp4 >joined && frames a.mp4 | cmp -s - joined || complain 'the parts differ' join
finish
