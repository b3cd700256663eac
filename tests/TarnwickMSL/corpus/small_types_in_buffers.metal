// Bytes, shorts, halves and booleans beside each other in device memory.
// @expects 200 -5 60000 | 1.5 -1 | 1 0 | 3
#include <metal_stdlib>
using namespace metal;

struct Small { uchar a; char b; ushort c; half d; short e; bool f; bool g; uchar h[3]; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Small* s [[buffer(2)]]) {
    int one = int(in[1]);
    s[one].a = 200; s[one].b = -5; s[one].c = 60000; s[one].d = half(in[3]) / 2.0h; s[one].e = -1;
    s[one].f = in[2] > 1.0; s[one].g = !s[one].f; s[one].h[one] = 3;
    Small copy = s[1];
    out[0] = float(copy.a); out[1] = float(copy.b); out[2] = float(copy.c);
    out[3] = float(copy.d); out[4] = float(copy.e);
    out[5] = copy.f ? 1.0 : 0.0; out[6] = copy.g ? 1.0 : 0.0;
    out[7] = float(copy.h[one]);
}
