// Constructors, arithmetic and conversions of vectors of char, short and their unsigned kin (2.2).
// @expects 250 4 | 1 2 3 4 | -128 127 | 65535 1 | 100 200 44 | 5 -5 | 1 0 | 255
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    uchar2 a = uchar2(in[250], in[10]);
    a.y += 250;
    out[0] = a.x; out[1] = a.y;
    short4 b = short4(short2(1, 2), short2(in[3], in[4]));
    out[2] = b.x; out[3] = b.y; out[4] = b.z; out[5] = b.w;
    char2 c = char2(-128, 127);
    out[6] = c.x; out[7] = c.y;
    ushort2 d = ushort2(0) - ushort2(1, 65535);
    out[8] = d.x; out[9] = d.y;
    uchar3 e = uchar3(100, 200, 150) * uchar3(1, 1, 2);
    out[10] = e.r; out[11] = e.g; out[12] = e.b;
    char4 g = char4(short4(b.w, 5, -5, 300));
    out[13] = g.y; out[14] = g.z;
    ushort3 h = ushort3(uchar3(in[1], 2, 3)) >> ushort3(0, 1, 2);
    out[15] = h.x; out[16] = h.z;
    out[17] = uchar(in[255]);
}
