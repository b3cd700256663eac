// Vectors of bool: made, swizzled both ways, combined, converted (2.2).
// @expects 1 0 1 1 | 1 1 0 | 0 1 0 0 | 1 1 1 0 | 3 | 1 0 | 0 1 1 0 | 1 0 0 | 1 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    bool2 a = bool2(in[1], in[0]);
    bool4 b(a, true, in[2] > in[1]);
    out[0] = b.x; out[1] = b.y; out[2] = b.z; out[3] = b.w;
    bool3 c = bool3(b.xz, b.g);
    out[4] = c[0]; out[5] = c[1]; out[6] = c[2];
    bool4 d = !b;
    out[7] = d.x; out[8] = d.y; out[9] = d.z; out[10] = d.w;
    d.xz = bool2(true);
    out[11] = d.r; out[12] = d.g; out[13] = d.b; out[14] = d.a;
    out[15] = dot(float4(b), float4(1));
    out[16] = any(b && d); out[17] = all(b || bool4(false));
    bool4 e = b ^ d.yxwz;
    out[18] = e.x; out[19] = e.y; out[20] = e.z; out[21] = e.w;
    int3 g = int3(c && bool3(true, false, true));
    out[22] = g.x; out[23] = g.y; out[24] = g.z;
    bool2 h = a == bool2(true, false);
    out[25] = h.x; out[26] = all(h);
}
