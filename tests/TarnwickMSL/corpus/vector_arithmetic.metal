// Operators of vectors with vectors and scalars, float and integer.
// @expects 3 6 9 | 0.5 1 1.5 | -1 -2 -3 | 1 0 3 | 8 16 | 2 3 | 6 2
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float3 v = float3(in[1], in[2], in[3]);
    float3 a = 3.0 * v, b = v / 2.0, c = -v;
    for (int i = 0; i < 3; i++) { out[i] = a[i]; out[3 + i] = b[i]; out[6 + i] = c[i]; }
    int3 d = int3(7, 8, 9) % int3(int(in[2]), int(in[4]), int(in[6]));
    out[9] = float(d.x); out[10] = float(d.y); out[11] = float(d.z);
    uint2 e = uint2(1u, 2u) << uint2(uint(in[3]), uint(in[3]));
    out[12] = float(e.x); out[13] = float(e.y);
    int2 g = int2(int(in[1]), int(in[2]));
    ++g;
    out[14] = float(g.x); out[15] = float(g.y);
    g ^= int2(4, 1);
    out[16] = float(g.x); out[17] = float(g.y);
}
