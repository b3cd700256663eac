// 64-bit integers: products, shifts, quotients, vectors, conversions (2.1, 2.2).
// @expects 1 0 | 4294967296 | 3 | 2147483648 | -2 1 | 7 | 1 | 1000000 | 8
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    ulong a = ulong(in[3]) << 32, b = a * 5;
    out[0] = b / 15 == 1ul << 32; out[1] = uint(a);
    out[2] = float(a / 3);
    out[3] = float(uint(b % 0xFFFFFFFFul) % 4);
    long c = -long(in[2]) << 31;
    out[4] = float(-c >> 1);
    long2 d = long2(c, 1l << 40) / long2(1l << 31, 1l << 40);
    out[5] = d.x; out[6] = d.y;
    ulong3 e = ulong3(1, 2, 4) * ulong(in[1]);
    out[7] = e.x + e.y + e.z;
    out[8] = (long(in[1]) << 50) > (1l << 49);
    int64_t million = int64_t(in[10]) * 100000;
    out[9] = million;
    out[10] = sizeof(long);
}
