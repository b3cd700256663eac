// Rounding in every direction, fractions and remainders.
// @expects -3 -2 -2 -2 | 3 2 | 0.5 | 1.5 | -1.5 | 2 0.25
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float x = -2.5 * in[1];
    out[0] = floor(x); out[1] = ceil(x); out[2] = trunc(x); out[3] = rint(x);
    out[4] = round(in[5] * 0.5); out[5] = rint(in[5] * 0.5);
    out[6] = fract(x);
    out[7] = fmod(in[7] + 0.5, in[2]); out[8] = fmod(-in[7] - 0.5, in[2]);
    float whole;
    float part = modf(in[9] * 0.25, whole);
    out[9] = whole; out[10] = part;
}
