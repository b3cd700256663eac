# Stills of particle and grid episodes: an error is one sentence, an interrupted run leaves nothing.
. "$PROMISES/promises.sh"
"$TARNWICK" devices >out 2>err || exit 77
# particles COUNT FIELDS UPDATE
particles() {
    cat <<TEXT
// @particles $1
struct Particle { float2 at; $2 };
Particle spawn(uint id, constant Params& p) { Particle q; q.at = float2(0.5); return q; }
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) { $3 }
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return float3(q.at, 0.2); }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return 1.0; }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails trails) { return trails.at(uv); }
TEXT
}
particles 50 '' 'q.at += 0.01 * u.timeDelta;' >p.metal
expect 0 '' still p.metal -o a.png --size 32x32 --time 5
have ! -s err -a -s a.png
"$TARNWICK" saver p.metal --offscreen 0.2 -o saver.png --size 32x32 >out 2>err || complain 'no saver' saver
expect 1 '^tarnwick: A particle episode has stills up to 71582788 seconds.$' \
    still p.metal -o b.png --size 8x8 --time 71582789
particles 4000000 'float4 more[4000];' '' >large.metal
expect 1 '^tarnwick: 4000000 particles of 64016 bytes are too many for .*, and it has room for ' \
    still large.metal -o b.png --size 8x8
"$TARNWICK" saver large.metal --offscreen 0.1 -o saver.png --size 8x8 >out 2>err &&
    complain 'a saver that draws nothing is done' saver
grep -q '^4000000 particles of 64016 bytes are too many' err || complain 'no reason' saver
particles 5 '' 'while (q.at.x < 2.0) q.at.y = sin(q.at.y);' >spin.metal
expect 0 '' still spin.metal -o c.png --size 8x8 --time 0.1
grep -q '^tarnwick: A loop of spin.metal ran for too long' err || complain 'silent' still
# Ctrl-C in the middle of a long simulation.
timeout -s INT 1 "$TARNWICK" still p.metal -o b.png --size 512x512 --time 1000000 2>err
have $? = 124
have ! -e b.png
[ "$(ls | grep partial)" = '' ] || complain 'a part is left' still
finish
