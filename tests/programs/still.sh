# A still shows the episode with the values that it was given.
. "$PROMISES/promises.sh"
episode >e.metal
"$TARNWICK" devices >out 2>err || exit 77
# The same call gives the same file.
expect 0 '' still e.metal -o a.png --size 64x48
expect 0 '' still e.metal -o b.png --size=64x48 --time 3 --frame 7
cmp -s a.png b.png || complain 'two stills of a still episode differ' still
expect 0 '' still e.metal -o c.png --size 64x48 --set red=0.5 --set green=0x1p-2
cmp -s a.png c.png && complain '--set changes nothing' still
echo '{"tracks":{"red":[{"time":0,"value":0,"ease":"linear"},{"time":4,"value":1,"ease":"hold"}],
 "gone":[{"time":0,"value":0,"ease":"hold"}]}}' >keys.json
expect 0 '' still e.metal -o d.png --size 64x48 --keys keys.json --time 2 --set green=0.25
cmp -s c.png d.png || complain 'keys do not give the value at the time' still
file c.png 2>/dev/null | grep -q '64 x 48' || head -c 24 c.png | tail -c 8 |
    od -An -tu1 | grep -q '0 *0 *0 *64 *0 *0 *0 *48' || complain 'not 64 by 48' still
# Without --time it is the one that the episode names, or 10 seconds.
moving='float4 shade(float2 uv, constant Uniforms& u, constant Params& p) { return u.time * 0.05; }'
echo "$moving" >ten.metal
(echo '// @still 4' && cat ten.metal) >four.metal
for file in ten four; do
    expect 0 '' still $file.metal -o $file.png --size 8x8
    expect 0 '' still $file.metal -o $file-again.png --size 8x8 --time $([ $file = ten ] && echo 10 || echo 4)
    cmp -s $file.png $file-again.png || complain "not the time of $file.metal" still
done
cmp -s ten.png four.png && complain '@still changes nothing' still
# --alpha keeps the episode's alpha; its colours are premultiplied, those of a PNG are not.
echo 'float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return uv.x < 0.5 ? float4(0.2, 0.1, 0.0, 0.4) : float4(0.5, 0.0, 0.0, 0.0); }' >glass.metal
expect 0 '' still glass.metal -o glass.png --size 4x2 --alpha
expect 0 '' still glass.metal -o opaque.png --size 4x2
pixels() { ffmpeg -v error -i "$1" -frames:v 1 -f rawvideo -pix_fmt "$2" - | head -c 16 | od -An -tu1 | tr -s ' \n' ' '; }
have "$(pixels glass.png rgba)" = ' 128 65 0 102 128 65 0 102 0 0 0 0 0 0 0 0 '
have "$(pixels opaque.png rgb24 | cut -d' ' -f2-13)" = '51 26 0 51 26 0 128 0 0 128 0 0'
finish
