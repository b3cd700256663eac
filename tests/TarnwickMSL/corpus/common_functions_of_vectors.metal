// The common functions with scalars beside vectors, of floats and halves (6.2).
// @expects 0 0.5 1 | 0 1 1 | 0 0.5 1 | 1.5 2 2.5 | -1 0 1 | 0.25 0.75 | 0.5 | 2 2 | 0 0.15625 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float3 v = float3(-in[1], 0.5, in[2]);
    float3 a = clamp(v, 0.0, 1.0);
    out[0] = a.x; out[1] = a.y; out[2] = a.z;
    a = step(0.5, v);
    out[3] = a.x; out[4] = a.y; out[5] = a.z;
    a = saturate(v);
    out[6] = a.x; out[7] = a.y; out[8] = a.z;
    a = mix(float3(1, 1, 2), float3(2, 3, 3), 0.5);
    out[9] = a.x; out[10] = a.y; out[11] = a.z;
    a = sign(float3(-3, in[0], 9));
    out[12] = a.x; out[13] = a.y; out[14] = a.z;
    half2 h = mix(half2(0, 1), half2(1, 0), half2(0.25));
    out[15] = h.x; out[16] = h.y;
    out[17] = smoothstep(0.0h, 2.0h, half(in[1]));
    float2 m = max(float2(in[2], -1), float2(0, 2));
    out[18] = m.x; out[19] = m.y;
    a = smoothstep(float3(0), float3(1), float3(-1, 0.25, 3));
    out[20] = a.x; out[21] = a.y; out[22] = a.z;
}
