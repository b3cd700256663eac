// select, any, all, not, and the tests of floats, halves and their vectors (6.4).
// @expects 1 0 | 1 0 1 | 1 1 | 1 0 | 2 5 | 30 | 0 1 | 1 | 7 8
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float nothing = in[0] / in[0], endless = in[1] / in[0];
    out[0] = isnan(nothing); out[1] = isnan(endless);
    bool3 infinite = isinf(float3(endless, 1, -endless));
    out[2] = infinite.x; out[3] = infinite.y; out[4] = infinite.z;
    out[5] = isfinite(half(in[3])); out[6] = isnormal(in[3]);
    out[7] = isunordered(nothing, 1.0f); out[8] = isordered(nothing, 1.0f);
    int2 chosen = select(int2(1, 2), int2(4, 5), int2(in[1], in[2]) > 1);
    out[9] = chosen.x + 1; out[10] = chosen.y;
    out[11] = select(10.0h, 30.0h, in[1] > 0);
    bool2 negative = signbit(float2(in[1], -in[1]));
    out[12] = negative.x; out[13] = negative.y;
    out[14] = all(not(bool2(false, in[0])));
    uchar2 bytes = select(uchar2(7, 9), uchar2(1, 8), bool2(any(bool2(false)), true));
    out[15] = bytes.x; out[16] = bytes.y;
}
