// Division towards zero, remainders, wrapping, shifts, and mixing signs and widths.
// @expects -2 -1 | 2 1 | 255 | 1 | -1 -4 | 6 | 3000000000
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    int a = -int(in[7]);
    out[0] = float(a / 3); out[1] = float(a % 3);
    out[2] = float(7 / 3); out[3] = float(int(in[7]) % 3);
    uint wrapped = uint(in[0]) - 1u;
    out[4] = float(wrapped & 255u);
    out[5] = float(wrapped + 2u);
    int shifted = -int(in[1]);
    out[6] = float(shifted >> 4); out[7] = float(shifted << 2);
    out[8] = float((uint(in[5]) ^ 3u) & ~0u);
    long wide = long(in[3]) * 1000000000l;
    out[9] = float(wide);
}
