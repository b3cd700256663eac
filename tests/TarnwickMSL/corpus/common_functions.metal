// clamp, mix, step, smoothstep, saturate, sign, min and max, of scalars and of vectors.
// @expects 3 | 2.5 | 0 1 | 0.5 | 1 0 | -1 0 1 | 1 3 5 | 2 5
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = clamp(in[9], in[1], in[3]);
    out[1] = mix(in[1], in[4], 0.5);
    out[2] = step(in[2], in[1]); out[3] = step(in[2], in[2]);
    out[4] = smoothstep(in[1], in[3], in[2]);
    out[5] = saturate(in[2]); out[6] = saturate(-in[2]);
    float3 s = sign(float3(-in[2], in[0], in[3]));
    out[7] = s.x; out[8] = s.y; out[9] = s.z;
    float3 c = clamp(float3(in[0], in[3], in[9]), 1.0, 5.0);
    out[10] = c.x; out[11] = c.y; out[12] = c.z;
    out[13] = min3(in[4], in[2], in[8]); out[14] = median3(in[9], in[5], in[1]);
}
