// exp, exp2, exp10, log, log2, log10, pow, powr, sqrt, rsqrt of floats, halves and vectors (6.5).
// @expects 2.7182818 8 100 | 0 3 2 | 8 9 | 3 0.5 | 1 2 4 | 2.7182818 | 1.5 | 16 8
// @within 1e-3
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = exp(in[1]); out[1] = exp2(in[3]); out[2] = exp10(in[2]);
    out[3] = log(in[1]); out[4] = log2(in[8]); out[5] = log10(in[100]);
    out[6] = pow(in[2], in[3]); out[7] = pow(-in[3], in[2]);
    out[8] = sqrt(in[9]); out[9] = rsqrt(in[4]);
    float3 powers = exp2(float3(in[0], in[1], in[2]));
    out[10] = powers.x; out[11] = powers.y; out[12] = powers.z;
    out[13] = exp(half(in[1]));
    out[14] = sqrt(half2(2.25h)).y;
    float2 p = powr(float2(in[4], in[2]), float2(2, 3));
    out[15] = p.x; out[16] = p.y;
}
