// Vectors made of scalars, of shorter vectors in every order, and of other types.
// @expects 1 1 2 3 | 1 2 3 4 | 1 2 3 4 | 1 2 3 3 | 7 7 7 | 2 3 | 1 0 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float2 a = float2(in[1], in[2]);
    float3 b = float3(a, in[3]);
    float4 c = float4(in[1], b), d = float4(a, in[3], in[4]), e = float4(a, float2(in[3], in[4]));
    out[0] = c.x; out[1] = c.y; out[2] = c.z; out[3] = c.w;
    for (int i = 0; i < 4; i++) { out[4 + i] = d[i]; out[8 + i] = e[i]; }
    float4 g(b, in[3]);
    out[12] = g.x; out[13] = g.y; out[14] = g.z; out[15] = g.w;
    float3 h = float3(in[7]);
    out[16] = h.x; out[17] = h.y; out[18] = h.z;
    int2 k = int2(float2(in[2] + 0.75, in[3] + 0.25));
    out[19] = float(k.x); out[20] = float(k.y);
    float3 flags = float3(bool3(in[1] > 0.0, in[0] > 0.0, true));
    out[21] = flags.x; out[22] = flags.y; out[23] = flags.z;
}
