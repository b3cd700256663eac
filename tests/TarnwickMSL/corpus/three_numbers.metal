// min3, max3, median3 and their f forms, fma, fmin and fmax with NaN, divide, trunc, rint, round (6.5).
// @expects 1 9 4 | 1 9 4 | 11 | 3 3 | 2.5 | -2 2 4 -3 | 1 2 | 5 7
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float a = in[4], b = in[9], c = in[1];
    out[0] = min3(a, b, c); out[1] = max3(a, b, c); out[2] = median3(a, b, c);
    out[3] = fmin3(a, b, c); out[4] = fmax3(b, a, c); out[5] = fmedian3(b, c, a);
    out[6] = fma(in[2], in[4], in[3]);
    float nothing = in[0] / in[0];
    out[7] = fmin(nothing, in[3]); out[8] = fmax(in[3], nothing);
    out[9] = divide(in[5], in[2]);
    out[10] = trunc(-in[2] - 0.75); out[11] = rint(in[2] + 0.5); out[12] = rint(in[3] + 0.5);
    out[13] = round(-in[2] - 0.5);
    half2 h = median3(half2(1, 9), half2(0, 2), half2(3, 1));
    out[14] = h.x; out[15] = h.y;
    float3 f = fma(float3(1, 2, 3), float3(2), float3(1));
    out[16] = f.y; out[17] = f.z;
}
