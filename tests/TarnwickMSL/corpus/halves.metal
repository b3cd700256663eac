// Half precision: rounding, literals, vectors, comparisons and conversions.
// @expects 2048 | 0.25 | 3 6 | 1 | 0.5 | 1.5
#include <metal_stdlib>
using namespace metal;

half doubled(half x) { return x * 2.0h; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    half big = half(in[1] * 2048.0);
    out[0] = float(big + half(in[1]));
    half quarter = 0.5h * half(in[1]) * 0.5h;
    out[1] = float(quarter);
    half2 v = half2(half(in[1]), half(in[2])) * 3.0h;
    out[2] = float(v.x); out[3] = float(v.y);
    out[4] = v.y > v.x ? 1.0 : 0.0;
    half4 c = half4(float4(0.5, in[1], in[2], in[3]));
    out[5] = float(c.r);
    out[6] = float(doubled(0.75h)) * in[1];
}
