// The integer functions of the standard library.
// @expects 8 | 24 7 | 128 | 16 | 1 | 5 3 | 255 | 10 | 14 | 127
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    uint x = uint(in[255 - 255]) + 0xffu;
    out[0] = float(popcount(x));
    out[1] = float(clz(x)); out[2] = float(ctz(x << 7u));
    out[3] = float(reverse_bits(x) >> 24u) / 255.0 * 128.0;
    out[4] = float(rotate(uint(in[1]), 36u));
    out[5] = float(mulhi(0x80000000u, 2u + uint(in[0])));
    out[6] = float(absdiff(int(in[2]), 7)); out[7] = float(hadd(uint(in[2]), 5u));
    out[8] = float(addsat(uchar(200), uchar(in[9] + 91.0)));
    out[9] = float(extract_bits(0xabcdu, 8u, 4u) - uint(in[1]));
    out[10] = float(mad24(int(in[2]), 5, 4));
    out[11] = float(subsat(char(120), char(-100)));
}
