# Findings bear the episode's own name and lines; status 1 where one is an error.
. "$PROMISES/promises.sh"
episode >good.metal
"$TARNWICK" check good.metal >out 2>err || complain 'a good episode fails' check good.metal
have ! -s out -a ! -s err
(episode && echo 'float x = y;') >bad.metal
"$TARNWICK" check bad.metal >out 2>err && complain 'a bad episode passes' check bad.metal
grep -q "^bad.metal:6:11: error: use of undeclared identifier 'y'" out ||
    complain 'no finding in line 6' check bad.metal
echo '// nothing' >empty.metal
"$TARNWICK" check empty.metal >out 2>err && complain 'an empty episode passes' check empty.metal
grep -q '^empty.metal:0:[0-9]*: error: .*shade' out || complain 'shade is not missed' check
echo '// @grid 4' >grid.metal
"$TARNWICK" check grid.metal >out 2>err
grep -q '^grid.metal:0:0: note: a vertex episode defines:$' out || complain 'no hint' check
"$TARNWICK" check bad.metal --json >out 2>err
for word in '"episode": "bad.metal"' '"severity": "error"' '"line": 6' '"column": 11' '"text": '; do
    grep -q "$word" out || complain "no $word" check --json
done
# What `still` refuses, `check` refuses.
(episode && for i in $(seq 16385); do echo "// @param p$i 0 0 1"; done) >many.metal
"$TARNWICK" check many.metal >out 2>err && complain 'too many parameters pass' check many.metal
grep -q '^tarnwick: many.metal does not compile: The episode declares 1638[5-9] parameters' err ||
    complain 'no sentence about parameters' check many.metal
cat >room.metal <<'END'
// @particles 4000000
struct Particle { float4 all[40]; };
Particle spawn(uint id, constant Params& p) { return {}; }
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {}
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return q.all[7].xyz; }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return 1; }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails t) { return t.at(uv); }
END
"$TARNWICK" check room.metal >out 2>err
[ $? = 0 ] || grep -q '^tarnwick: 4000000 particles of 640 bytes are too many' err ||
    complain 'no sentence about room' check room.metal
# A function of the episode's own under a host's name, which a macro hides, is not the host's.
(episode && echo 'kernel void tw_fragment(device uint* o [[buffer(0)]]) { o[0] = 1; }
#define tw_fragment hidden') >own.metal
for command in check 'still -o own.png'; do
    expect 1 'The host entry points are missing from the compiled library.' $command own.metal
done
finish
