// Columns, elements, products in every order, transpose and determinant.
// @expects 1 2 3 4 | 7 10 | 5 11 | 7 10 15 22 | 3 | -2 | 9 12 15 | 2 8
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float2x2 m = float2x2(float2(in[1], in[2]), float2(in[3], in[4]));
    out[0] = m[0][0]; out[1] = m[0][1]; out[2] = m[1].x; out[3] = m[1].y;
    float2 v = m * float2(in[1], in[2]), w = float2(in[1], in[2]) * m;
    out[4] = v.x; out[5] = v.y; out[6] = w.x; out[7] = w.y;
    float2x2 square = m * m;
    out[8] = square[0][0]; out[9] = square[0][1]; out[10] = square[1][0]; out[11] = square[1][1];
    out[12] = transpose(m)[0][1];
    out[13] = determinant(m);
    float2x3 tall = float2x3(float3(in[1], in[2], in[3]), float3(in[4], in[5], in[6]));
    float3 t = tall * float2(1.0, 2.0);
    out[14] = t.x; out[15] = t.y; out[16] = t.z;
    float2x2 twice = 2.0 * m;
    out[17] = twice[0][0]; out[18] = twice[1][1];
}
