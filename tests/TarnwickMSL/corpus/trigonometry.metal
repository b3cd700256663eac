// Sines, cosines and tangents, their inverses, in radians and in half turns, and of halves (6.5).
// @expects 0 1 1 | 0.84147098 0.54030231 1.5574077 | 1.5707963 3.1415927 0.78539816 | 2.3561945 | 1 -1 1 | 0.84147098 0.54030231 | 0.5 0.5
// @within 2e-3
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = sin(in[0]); out[1] = cos(in[0]); out[2] = tan(in[1] * M_PI_4_F);
    float2 s = sin(float2(in[1])), c = cos(float2(in[1]));
    out[3] = s.x; out[4] = c.y; out[5] = tan(in[1]);
    out[6] = asin(in[1]); out[7] = acos(-in[1]); out[8] = atan(in[1]);
    out[9] = atan2(in[1], -in[1]);
    out[10] = sinpi(0.5 * in[1]); out[11] = cospi(in[1]); out[12] = tanpi(0.25 * in[1]);
    float cosine;
    out[13] = sincos(in[1], cosine); out[14] = cosine;
    half3 h = sin(half3(M_PI_H / 6));
    out[15] = h.y; out[16] = cos(half(M_PI_F / 3));
}
