// frexp, ldexp, modf, fract, ilogb, nextafter, copysign, fdim, fmod, of vectors too (6.5).
// @expects 0.75 4 | 0.5 0.5 2 3 | 48 | 0.25 5 | 0.75 | 3 -4 | 1 | -2 | 3 0 | 2 -2 | 1 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    int exponent;
    out[0] = frexp(in[12], exponent); out[1] = exponent;
    int2 exponents;
    float2 parts = frexp(float2(in[2], in[4]), exponents);
    out[2] = parts.x; out[3] = parts.y; out[4] = exponents.x; out[5] = exponents.y;
    out[6] = ldexp(in[3], 4);
    float whole;
    out[7] = modf(in[5] + 0.25, whole); out[8] = whole;
    out[9] = fract(-in[2] - 0.25);
    out[10] = ilogb(in[12]); out[11] = ilogb(half(0.0625));
    out[12] = nextafter(in[1], 2.0f) > 1.0f && nextafter(in[1], 2.0f) < 1.000001f;
    out[13] = copysign(in[2], -in[1]);
    out[14] = fdim(in[5], in[2]); out[15] = fdim(in[2], in[5]);
    float2 rest = fmod(float2(in[5], -in[5]), 3.0);
    out[16] = rest.x; out[17] = rest.y;
    half3 halves;
    out[18] = modf(half3(2.5h), halves).x * 2; out[19] = halves.z - 1;
}
