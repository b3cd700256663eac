// Two words shifted as one, turned words and bytes in reverse order, written with shifts (6.3): the
// compiler makes one instruction of each.
// @expects 4*1 | 4*1 | 3*1
#include <metal_stdlib>
using namespace metal;

template <typename T> T joined(T a, T b) { return T(T(a << 3) | T(b >> (sizeof(T) * 8 - 3))); }
template <typename T> T turned(T a, int n) {
    const int mask = sizeof(T) * 8 - 1;
    return T(T(a >> (n & mask)) | T(a << (-n & mask)));
}
static ushort swapped(ushort x) { return ushort(x << 8 | x >> 8); }
static uint swapped(uint x) { return x << 24 | (x << 8 & 0xff0000) | (x >> 8 & 0xff00) | x >> 24; }
static ulong swapped(ulong x) { return ulong(swapped(uint(x))) << 32 | swapped(uint(x >> 32)); }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    const int n = int(in[3]);
    const uint zero = uint(in[0]);
    const uchar byte = uchar(zero + 0x12);
    const ushort two = ushort(zero + 0x1234);
    const uint four = zero + 0x12345678;
    const ulong eight = zero + 0x123456789abcdef0ul;
    out[0] = joined(byte, uchar(zero + 0x34)) == 0x91;
    out[1] = joined(two, ushort(zero + 0x5678)) == 0x91a2;
    out[2] = joined(four, zero + 0x9abcdef0u) == 0x91a2b3c4;
    out[3] = joined(eight, zero + 0xfedcba9876543210ul) == 0x91a2b3c4d5e6f787ul;
    out[4] = turned(byte, n) == 0x42;
    out[5] = turned(two, n) == 0x8246;
    out[6] = turned(four, n) == 0x2468acf;
    out[7] = turned(eight, n) == 0x2468acf13579bdeul;
    out[8] = swapped(two) - 0x3411;
    out[9] = swapped(four) - 0x78563411;
    out[10] = swapped(eight) - 0xf0debc9a78563411ul;
}
