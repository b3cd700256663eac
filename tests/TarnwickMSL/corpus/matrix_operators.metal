// Operators of matrices with matrices, vectors and scalars; equality; determinants (2.3, 3.2, 6.6).
// @expects 6 8 10 12 | -4 -4 | 23 31 34 46 | 2 4 6 8 | 0.5 1 1.5 2 | 7 10 | 5 11 | 1 0 | -2 | 24 | -1 -2
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float2x2 a = float2x2(in[1], in[2], in[3], in[4]), b = float2x2(float2(5, 6), float2(7, 8));
    float2x2 c = a + b;
    out[0] = c[0].x; out[1] = c[0].y; out[2] = c[1].x; out[3] = c[1].y;
    c = a - b;
    out[4] = c[0][0]; out[5] = c[1][1];
    c = a * b;
    out[6] = c[0][0]; out[7] = c[1][0]; out[8] = c[0][1]; out[9] = c[1][1];
    c = a * 2.0;
    out[10] = c[0][0]; out[11] = c[0][1]; out[12] = c[1][0]; out[13] = c[1][1];
    c = 0.5 * a;
    out[14] = c[0][0]; out[15] = c[0][1]; out[16] = c[1][0]; out[17] = c[1][1];
    float2 v = a * float2(1, 2);
    out[18] = v.x; out[19] = v.y;
    v = float2(1, 2) * a;
    out[20] = v.x; out[21] = v.y;
    out[22] = a == float2x2(1, 2, 3, 4); out[23] = a != a;
    out[24] = determinant(a);
    out[25] = determinant(float4x4(1, 0, 0, 0, 0, 2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4));
    c = -a;
    out[26] = c[0].x; out[27] = c[0].y;
}
