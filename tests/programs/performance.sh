# What was performed is exported, the same each time; a file that is not a performance is an error.
. "$PROMISES/promises.sh"
cat >e.metal <<'TEXT'
// @param level 0.5 0 1
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(p.level, fract(u.time), u.mouse.x / u.resolution.x, 1.0); }
float2 sound(float t, constant Params& p) { return sin(t * 2000.0) * p.level; }
TEXT
begin='{"kind":"performance","version":1,"episode":{"title":"e","sha256":""},"settings":{"name":"","values":{},"keys":{"tracks":{}}},"clock":[0,0,1,true],"mouse":null}'
{
    echo "$begin"
    echo '[0.5,"value","level",0.25]'
    echo '[0.5,"mouse",[0.75,0.5]]'
    echo '[0.6,"value","gone",1]'
    echo '[1,"clock",[0.5,1,1,false]]'
    echo '{"length":2,"remarks":["A camera was shown."]}'
} >e.performance
(echo "$begin" && echo '[1,"tilt",2]') >bad.performance
expect 2 'e.metal holds no performance: The document is not a performance.' export e.metal -o a.mp4 --performance e.metal
expect 2 'bad.performance holds no performance: Line 2 has a change of the unknown kind "tilt".' \
    export e.metal -o a.mp4 --performance bad.performance
expect 2 'none is missing' export e.metal -o a.mp4 --performance none
for option in '--loop 1' '--find-loop 1' '--set level=1'; do
    # shellcheck disable=SC2086
    expect 2 'exclude each other' export e.metal -o a.mp4 --performance e.performance $option
done
"$TARNWICK" export e.metal -o a.mp4 --performance e.performance --start 3 >out 2>err
have $? = 2
grep -q 'The movie would be -1 s long' err || complain 'nothing about the length' export
have ! -e a.mp4
{ "$TARNWICK" devices && command -v ffmpeg; } >out 2>err || exit 77
for file in a b; do
    "$TARNWICK" export e.metal -o $file.mp4 --size 32x18 --performance e.performance >out 2>err
    have $? = 0
done
grep -q 'e.performance: A camera was shown' err || complain 'nothing about the remark' export
grep -q 'Another text than e.metal was performed' err || complain 'nothing about the text' export
grep -q 'declares no parameter "gone"' err || complain 'nothing about the parameter' export
cmp a.mp4 b.mp4 || complain 'two exports differ' export
grep -q '60 frames, 2 s' out || complain 'the movie is not as long as the performance' export
"$TARNWICK" still e.metal -o s.png --size 2x2 --performance e.performance --time 1.5 2>err
have $? = 0
# Red 0.25, green 0.5, blue 0.75.
ffmpeg -v error -i s.png -f rawvideo -pix_fmt rgb24 - | od -An -tu1 -N3 >pixel
grep -q '^ *64 128 191' pixel || complain "$(cat pixel) is not the performed colour" still
finish
