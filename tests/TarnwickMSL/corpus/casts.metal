// Casts of every spelling: C's, functions', static_cast, reinterpret_cast and const_cast (2.20).
// @expects 2 | -3 | 7 | 1065353216 | 4 | 255 | 3 5 | 1 2 3 4 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = (int)(in[2] + 0.75);
    out[1] = int(-in[3] - 0.25);
    out[2] = static_cast<ushort>(in[7]);
    float one = in[1];
    out[3] = *reinterpret_cast<thread uint*>(&one);
    const float four = in[4];
    out[4] = *const_cast<thread float*>(&four);
    out[5] = (uchar)-1;
    int2 whole = (int2)float2(in[3], in[5] + 0.9);
    int4 lanes = int4(1, 2, 3, 4);
    thread const int4* there = &lanes;
    out[8] = static_cast<metal::float4>(lanes).x; out[9] = static_cast<vec<float, 4>>(lanes).y;
    out[10] = ((metal::float4)lanes).z; out[11] = ((const float4)lanes).w;
    out[12] = ((float4)*there).x;
    out[6] = static_cast<float2>(whole).x; out[7] = float2(whole).y;
}
