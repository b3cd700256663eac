# Finds the length at which an episode loops, or prints why there is none.
. "$PROMISES/promises.sh"
turning() {
    echo '// @param period 2 0.1 10'
    echo 'float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {'
    echo '    return float4(0.5 + 0.5 * cos(6.2831853 * (u.time / p.period + uv.x)));'
    echo '}'
}
turning >e.metal
expect 2 'around SECONDS is required' loop e.metal
for seconds in -1 nan inf 1e39 long ''; do
    expect 2 'around must be a number of seconds, at least 0, not "' loop e.metal --around "$seconds"
done
expect 2 'fps must be a whole number from 1 to 1000, not "0"' loop e.metal --around 2 --fps 0
expect 2 'declares no parameter "speed"; it declares period' loop e.metal --around 2 --set speed=1
"$TARNWICK" devices >out 2>err || exit 77
expect 0 '^2 seconds: 60 frames, whose ends differ by 0.00' loop e.metal --around 2.2
expect 0 '^1.5 seconds: 15 frames' loop e.metal --around 1 --range 1 --fps 10 --set period=1.5 --start 3
expect 0 '^2 seconds: 60 frames' loop e.metal --around 2.2 --loop 0.5
# The seam: the first frame, the one after the last, and their difference, side by side.
expect 0 '"length": 2.0,' loop e.metal --around 2.2 --seam seam.png --json
[ "$(head -c 24 seam.png | tail -c 8 | od -An -tx1 | tr -d ' ')" = 000005a00000010e ] ||
    complain 'another size of the seam' loop
expect 2 'seam writes files that end in .png' loop e.metal --around 2 --seam seam.jpg
expect 0 '^2 seconds' loop e.metal --around 2.2 --loop 0.5
begins='^tarnwick: The loop starts at 0.5 s, not at 0 s, because its crossfade uses the seconds before'
grep -q "$begins" err || complain 'no word of its start' loop
expect 2 'no length of two frames or more' loop e.metal --around 0.01 --range 0
cat >grid.metal <<'TEXT'
// @grid 4
struct Vertex { float4 position [[position]]; };
Vertex corner(float2 grid, constant Uniforms& u, constant Params& p) { return {float4(grid, 0, 1)}; }
float4 shade(Vertex v, constant Uniforms& u, constant Params& p) { return 1.0; }
TEXT
expect 1 'grid.metal is a grid episode' loop grid.metal --around 2
finish
