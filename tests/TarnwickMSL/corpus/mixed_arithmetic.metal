// Scalars beside vectors, of other types and signs; promotions; compound assignment across types (2.21, 3.1).
// @expects 3 4.5 | 2 3 | 5 7 9 | -1 | 3.5 | 4294967295 | 6 6 | 1 | 0.5 1 | 44
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float2 a = 1.5 * float2(in[2], in[3]);
    out[0] = a.x; out[1] = a.y;
    int2 b = int2(in[4], in[7]) / 2;
    out[2] = b.x; out[3] = b.y;
    float3 c = 2 * float3(in[1], in[2], in[3]) + 3;
    out[4] = c.x; out[5] = c.y; out[6] = c.z;
    out[7] = short(in[1]) - ushort(in[2]);
    int n = 3;
    n += 0.9;
    out[8] = n + 0.5;
    uint u = uint(in[1]);
    u -= 2;
    out[9] = u;
    half2 h = half2(2) * in[3];
    out[10] = h.x; out[11] = h.y;
    out[12] = -1 < int(in[0]) && 1u > 0;
    float2 q = float2(int2(1, 2)) / 2;
    out[13] = q.x; out[14] = q.y;
    uchar byte = 200;
    byte += in[100];
    out[15] = byte;
}
