// mulhi, madhi, madsat, mul24, mad24 of both signs and several widths (6.3).
// @expects 1 -1 | 3 | 2147483647 -2147483648 | 127 | 4294967295 | 12 14 | 100 | -1 | 4
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    uint big = uint(in[1]) << 31;
    out[0] = mulhi(big, 2u); out[1] = mulhi(-int(in[1]), 5);
    out[2] = madhi(big, 4u, 1u);
    out[3] = madsat(int(in[3]) << 29, 4, 100); out[4] = madsat(-(int(in[3]) << 29), 4, -100);
    out[5] = madsat(char(in[100]), char(2), char(3));
    out[6] = madsat(big, 2u, 7u);
    out[7] = mul24(int(in[3]), 4); out[8] = mad24(uint(in[3]), 4u, 2u);
    ushort2 s = mulhi(ushort2(6553, 1), ushort2(1001, 2));
    out[9] = s.x + s.y;
    short3 t = mulhi(short3(-1), short3(1, 2, 3));
    out[10] = t.z;
    out[11] = float(mulhi(ulong(in[1]) << 63, 8ul));
}
