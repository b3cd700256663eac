// Swizzles by both alphabets, repeated lanes, swizzles of swizzles and of results; the lane
// of a bool.
// @expects 4 3 2 1 | 1 1 2 | 3 1 | 2 3 | 5 5 | 9 | 2 1
#include <metal_stdlib>
using namespace metal;

float4 four(constant float* in) { return float4(in[1], in[2], in[3], in[4]); }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float4 v = four(in);
    float4 a = v.wzyx;
    out[0] = a.x; out[1] = a.y; out[2] = a.z; out[3] = a.w;
    float3 b = v.xxy;
    out[4] = b.x; out[5] = b.y; out[6] = b.z;
    out[7] = v.bgra.xy.x; out[8] = v.zyx.z;
    float2 c = four(in).yz;
    out[9] = c.x; out[10] = c.y;
    float2 d = (v + v.wzyx).xw;
    out[11] = d.x; out[12] = d.y;
    out[13] = dot(v.xyz, float3(1.0, 1.0, 2.0));
    out[14] = v[bool(in[5])]; out[15] = v[bool(in[0])];
}
