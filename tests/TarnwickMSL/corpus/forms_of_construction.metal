// Values of what the pass over the tokens rewrites: constructors in every place, casts, literals.
// @expects 1 2 3 4 | 5 6 7 1 | 2 2 2 2 | 1 4 9 16 | 0.5 1.5 2.5 3 | 3 4 1 2 | 6 4 2 0 | 1 0 1 1 | -2 1 3 4 | 10 20 30 40 | 7 7 7 8 | 1 2 3 4 | 5 2 1 3
#include <metal_stdlib>
using namespace metal;

using quad = float4;
template <typename T> using pair = vec<T, 2>;
template <typename T> T made(float a, float b, float c, float d) { return T(a, b, c, d); }
template <typename T> T every(int x) { return T(x); }
template <typename T> T half_of(T x) { return 0.5 * x; }
struct Held {
    float4 v;
    float2 w = float2(3, 4), x{1, 2};
    Held(float3 a) : v(a, 1) {}
};
constant float4 table[2] = {{1, 2, 3, 4}, float4(float2(5, 6), 7, 1)};

kernel void check(device float4* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    int n = int(in[1]);
    out[0] = table[n - 1];
    out[1] = Held(table[n].xyz).v;
    out[2] = every<quad>(n + n);
    float4 a = made<float4>(1, 2, 3, 4);
    a.xyzw *= a;
    out[3] = a;
    float3 b(half_of(float2(n, 3)), 2.5), c{b}, d = {b.x, b.yz};
    out[4] = quad(c.x, d.yz, (half)3.0h);
    Held h(b);
    out[5] = float4(h.w, h.x);
    pair<float> p(n, 2), q = (float2)(n + 1);
    out[6] = metal::float4(6, p + q - float2(-1, 2), 0) - float4(0, 0, 0, 0);
    bool4 m = bool4(p.x < p.y, false, p == p);
    out[7] = float4(m);
    float2 r = float2(1, 2);
    r.xy *= float2x2(0, 1, -1, 0);
    out[8] = float4(int4(-r.x * 1.0, 1.9, 3, 4));
    out[8].x = -2 * out[8].y;
    uchar4 small = uchar4(10, 20, 30, 40);
    out[9] = float4(packed_float4(float4(small)));
    out[10] = float4(as_type<float3>(as_type<uint3>(float3(7))), static_cast<float2>(8).y);
    float2 one = float2(n, 2), both[2][2] = {{{1, 2}, {p}}, {{one}, {3, r.x}}};
    float2x2 columns = {{1, one.y}, {3, n + 3.0f}}, sum = columns + float2x2({0, 0}, both[0][0] - one);
    out[11] = float4(sum[0], sum[1]);
    float3x3 mixed[1] = {{{both[1][0], 3}, float3(1), {n, one}}};
    out[12] = float4(mixed[0] * float3(1, 1, 1) + float3(2, -2, -5), 3);
}
