// Vectors of half in every form of construction, with floats beside them (2.2).
// @expects 1 2 3 4 | 0.5 0.5 0.5 | 1.5 2.5 | 6 | 2 4 6 8 | 1 1 2 2 | 0.25
#include <metal_stdlib>
using namespace metal;

half lengthOf(half3 v) { return v.x + v.y + v.z; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    half4 a = half4(in[1], half2(2, 3), 4.0h);
    out[0] = a.x; out[1] = a.y; out[2] = a.z; out[3] = a.w;
    half3 b(0.5);
    out[4] = b.x; out[5] = b.y; out[6] = b.z;
    half2 c = half2(float2(in[1], in[2])) + 0.5h;
    out[7] = c.x; out[8] = c.y;
    out[9] = lengthOf(half3(a.xyz));
    float4 d = float4(a) * 2;
    out[10] = d.x; out[11] = d.y; out[12] = d.z; out[13] = d.w;
    half4 e = {1, 1, half2(2)};
    out[14] = e.x; out[15] = e.y; out[16] = e.z; out[17] = e.w;
    b *= b;
    out[18] = b.z;
}
