# Findings have the episode's own name and lines; status 1 if one is an error.
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
grep -q "^empty.metal: error: 'shade' is not defined$" out || complain 'shade is not missed' check
echo '// @grid 4' >grid.metal
"$TARNWICK" check grid.metal >out 2>err
grep -q '^grid.metal: note: a vertex episode defines:$' out || complain 'no hint' check
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
# The caret is below the place, after tabs, accents and letters of two cells.
(episode && printf '/* \303\251 \346\260\264\t*/\tvec3 c;\n') >wide.metal
"$TARNWICK" check wide.metal >out 2>err
printf '%s\n' "wide.metal:6:14: error: unknown type name 'vec3'" \
    '    6 | /* é 水 */  vec3 c;' '      |             ^~~~' \
    '      hint: vec3 is float3 in Metal' >wanted
cmp -s out wanted || complain 'not the wanted excerpt' check wide.metal
# Lines that begin like a declaration are warned of, and more on request.
(echo '// @param size 1, 0, 2' && episode &&
    echo 'float third(float x) { float unused = x; return 1 / 3; }') >sloppy.metal
"$TARNWICK" check sloppy.metal >out 2>err || complain 'warnings fail' check sloppy.metal
grep -q '^sloppy.metal:1:16: warning: @param is ignored' out || complain 'no warning' check
have "$(grep -c warning: out)" = 1
"$TARNWICK" check -W sloppy.metal >out 2>err || complain 'warnings fail' check -W sloppy.metal
for column in 30 51; do
    grep -q "^sloppy.metal:7:$column: warning: " out || complain "none in column $column" check -W
done
# A byte that is no UTF-8 is an error of its line, everywhere; a byte order mark is none.
(episode && printf '// caf\351\n') >latin.metal
"$TARNWICK" check latin.metal >out 2>err && complain 'Latin-1 passes' check latin.metal
grep -q '^latin.metal:6:7: error: byte 0xE9 is not UTF-8; save the file as UTF-8$' out ||
    complain 'no place of the byte' check latin.metal
"$TARNWICK" still latin.metal -o out.png >out 2>err && complain 'Latin-1 is drawn' still
grep -q '^latin.metal:6:7: error: byte 0xE9' err || complain 'no place of the byte' still
expect 1 '^tarnwick-saver: latin.metal:6:7: byte 0xE9 is not UTF-8' saver latin.metal --offscreen 0.1
(printf '\357\273\277' && episode) >marked.metal
"$TARNWICK" check marked.metal >out 2>err || complain 'a byte order mark fails' check marked.metal
finish
