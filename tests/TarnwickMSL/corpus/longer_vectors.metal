// Vectors made of longer ones take their first components (2.2.2).
// @expects 1 2 3 | 1 2 | 2 3 | 3 4 1 | 1 0 | 7 8
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float4 v = float4(in[1], in[2], in[3], in[4]);
    float3 a = float3(v);
    out[0] = a.x; out[1] = a.y; out[2] = a.z;
    half2 b = half2(v);
    out[3] = b.x; out[4] = b.y;
    int2 c = (int2)v.yzw;
    out[5] = c.x; out[6] = c.y;
    float3 d(v.zwxy);
    out[7] = d.x; out[8] = d.y; out[9] = d.z;
    bool2 e = bool2(bool3(v.xyz < float3(2)));
    out[10] = e.x; out[11] = e.y;
    packed_float4 p = packed_float4(7, 8, 9, 10);
    float2 f = float2(p);
    out[12] = f.x; out[13] = f.y;
}
