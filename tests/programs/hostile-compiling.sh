# Episodes that take all that a compiler has: time, memory, stack. See hostile.sh.
. "$PROMISES/promises.sh"
. "$PROMISES/hostile-promises.sh"

# Depth and length.
body "uv.y = $(repeat 300000 '1.0 + ') 1.0;" >sum.metal
hostile 1 '^sum.metal: error: the program nests too deeply for the compiler' sum
body "$(repeat 100000 '{')$(repeat 100000 '}')" >braces.metal
hostile 1 'error: bracket nesting level exceeded maximum of 256' braces
body "float $(repeat 5000000 a) = 1.0;" >name.metal
hostile 0 '' name
body "switch (int(uv.x * 1e6)) { $(awk 'BEGIN { for (i = 0; i < 60000; ++i) printf "case %d: uv.y = %d.0; break;\n", i, i }') }" >switch.metal
hostile 1 '^switch.metal: error: the compiler ran out of time (8 s)$' switch
{ awk 'BEGIN { for (i = 0; i < 100000; ++i) printf "// @param p%d 0 0 1\n", i }' && body ''; } >params.metal
hostile 1 'The episode declares 100000 parameters; at most 16384 can be passed' params
# Expansion.
{
    echo '#define A0 x +'
    for i in 1 2 3 4 5 6 7 8 9 10 11; do
        echo "#define A$i $(repeat 10 "A$((i - 1)) ")"
    done
    body 'float x = 1.0; float y = A11 1.0;'
} >macros.metal
hostile 1 '^macros.metal: error: the compiler ran out of ' macros
{ echo '#define X6(x) x x x x' && for i in 5 4 3 2 1 0; do
    echo "#define X$i(x) X$((i + 1))(X$((i + 1))(X$((i + 1))(X$((i + 1))(x))))"
done && body 'X0(;) X0(;) X0(X0(X0(;)))'; } >arguments.metal
hostile 1 'error: ' arguments
{ echo 'template<int N> struct F { static constant constexpr int v = F<N - 1>::v + F<N - 2>::v; };' &&
    body 'uv.x = F<100000>::v;'; } >template.metal
hostile 1 'error: recursive template instantiation exceeded maximum depth of 1024$' template
{ echo 'template<typename A, int N> struct P { typedef typename P<P<A, N - 1>, N - 1>::t t; };' &&
    body 'P<int, 1000>::t q;'; } >types.metal
hostile 1 'error: recursive template instantiation exceeded maximum depth of 1024$' types
{ echo 'float g0(float x) { return sin(x); }' && awk 'BEGIN { for (i = 1; i < 40; ++i)
    printf "float g%d(float x) { return g%d(x) + g%d(x * 2.0); }\n", i, i - 1, i - 1 }' &&
    body 'uv.x = g39(uv.x);'; } >calls.metal
hostile 0 '' calls
# Evaluation.
{ echo 'constexpr int f(int n) { int s = 0; for (int i = 0; i < n; ++i) for (int j = 0; j < n; ++j) s += i ^ j; return s; }
constant int k = f(100000);' && body 'uv.x += k;'; } >constant.metal
hostile 1 "error: The value of the constant 'k' cannot be computed at compile time" constant
# Memory.
body 'float a[1000000000]; a[int(uv.x)] = 1.0; uv.y = a[int(uv.y)];' >local.metal
hostile 1 'error: variable takes 4000000000 bytes; the maximum is 262144$' local
{ echo 'constant float t[100000000] = {1.0};' && body 'uv.y = t[int(uv.y * 10.0)];'; } >table.metal
hostile 1 '^table.metal: error: ' table
{ printf 'constant float t[] = {' && repeat 3000000 '1,' && echo '1};' && body 'uv.y = t[int(uv.y * 10.0)];'; } >list.metal
hostile 1 ' does not compile' list
cat >particles.metal <<'END'
// @particles 4000000
struct Particle { float2 at; float4 m[4000]; };
Particle spawn(uint id, constant Params& p) { return {}; }
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {}
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return 0.1; }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return 1.0; }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails t) { return t.at(uv); }
END
hostile 1 '^tarnwick: 4000000 particles of 64016 bytes are too many for ' particles
# Time of drawing.
body 'float s = uv.x; while (s > -1.0) while (s > -2.0) s = fract(s * 1.37 + u.time); uv.x = s;' >endless.metal
hostile 0 'A loop of endless.metal ran for too long and was stopped' endless
finish
