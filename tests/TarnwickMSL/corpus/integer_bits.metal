// popcount, clz, ctz, reverse_bits, rotate, extract_bits, insert_bits of several widths (6.3).
// @expects 8 32 | 24 8 | 31 16 | 128 | 129 | 16 3 | -1 | 43775 | 1 2 3 | 0 | 64 7
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    uint byte = uint(in[255]);
    out[0] = popcount(byte); out[1] = popcount(uint(~0u));
    out[2] = clz(byte); out[3] = clz(ushort(byte));
    out[4] = ctz(uint(in[1]) << 31); out[5] = ctz(ushort(in[0]));
    out[6] = reverse_bits(uchar(in[1]));
    out[7] = rotate(uchar(in[3]), uchar(7));
    out[8] = rotate(int(in[1]), 4); out[9] = extract_bits(0x3A5u * uint(in[1]), 8u, 4u);
    out[10] = extract_bits(int(in[240]), 4u, 4u);
    out[11] = insert_bits(0xFFFFu * uint(in[1]), 0xAAu, 8u, 8u) - 0x0u;
    uint3 c = popcount(uint3(1, 3, 7));
    out[12] = c.x; out[13] = c.y; out[14] = c.z;
    out[15] = extract_bits(byte, 3u, 0u);
    out[16] = float(clz(long(in[0]))); out[17] = float(popcount(0x7F00000000000000ul * ulong(in[1])));
}
