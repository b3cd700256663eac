# Without --hear an episode with Inputs hears silence in a still; with it, the same sound as in playback.
. "$PROMISES/promises.sh"
sounding='float2 sound(float t, constant Params& p) { return t < 3.0 ? 0.0 : p.red * sin(6283.2 * t); }'
(episode && echo "$sounding") >deaf.metal
hearing() {
    echo '// @param red 0.25 0 1'
    echo '// @param green 0.5 0 1'
    echo 'float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {'
    echo "    return float4($1, 1.0); }"
}
(hearing 'in.audio.yzw' && echo "$sounding") >e.metal
hearing 'in.audio.yzw' >mute.metal
expect 1 'deaf.metal does not hear its sound: its shade has no parameter of the type Inputs' \
    still deaf.metal -o a.png --hear
expect 1 'mute.metal has no sound' still mute.metal -o a.png --hear
"$TARNWICK" devices >out 2>err || exit 77
size='--size 16x16'
expect 0 '' still e.metal -o silent.png $size --time 5
expect 0 '' still e.metal -o early.png $size --time 2.9 --hear
cmp -s silent.png early.png || complain 'something is heard before the sound' still
hearing "float3(1.0)" >white.metal
expect 0 '' still white.metal -o white.png $size
# The levels that `spectrum` prints, and not those of the first frame alone.
for time in 3.02 5; do
    expect 0 '^level ' spectrum e.metal --time $time
    set -- $(awk '{ print $2 }' out)
    (hearing "float3(abs(in.audio.yzw - float3($2, $3, $4)) < 0.001)" && echo "$sounding") >levels.metal
    expect 0 '' still levels.metal -o a.png $size --time $time --hear
    cmp -s a.png white.png || complain "not the levels at $time" still
done
expect 0 '' still e.metal -o a.png $size --time 5 --hear
expect 0 '' still e.metal -o b.png $size --time 5 --hear --set red=0.01
cmp -s a.png b.png && complain 'the sound has not the values' still
# In a sheet the episodes with Inputs hear.
(echo '// @still 5' && cat e.metal) >five.metal
expect 0 '' sheet five.metal deaf.metal -o a.png $size
expect 0 '' sheet five.metal deaf.metal -o b.png $size --hear
cmp -s a.png b.png && complain '--hear changes nothing' sheet
finish
