// char, short and their unsigned kin: wrapping, sign, vectors, and arithmetic as int.
// @expects 4 | -56 | 200 | 1 | 300 | -1 65535 | 7 8
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    uchar a = uchar(in[2] + 258.0 - 256.0);
    a = uchar(int(a) + 256);
    out[0] = float(a);
    char b = char(int(in[2]) * 100);
    out[1] = float(b);
    uchar c = uchar(b);
    out[2] = float(c);
    c += 57;
    out[3] = float(c);
    uchar d = 150, e = 150;
    out[4] = float(d + e) + in[0];
    short f = short(int(in[9]) + 65526);
    ushort g = ushort(f);
    out[5] = float(f); out[6] = float(g);
    short2 h = short2(short(in[3]), short(in[4])) + short2(4);
    out[7] = float(h.x); out[8] = float(h.y);
}
