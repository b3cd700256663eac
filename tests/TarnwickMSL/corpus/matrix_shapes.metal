// All nine shapes of matrices, of float and of half: products across shapes, sizes (2.3).
// @expects 16 32 32 24 48 48 32 64 64 | 8 | 6 15 | 5 7 9 | 10 20 30 | 22 28 49 64 | 3 | 1 0 0 2
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = sizeof(float2x2); out[1] = sizeof(float2x3); out[2] = sizeof(float2x4);
    out[3] = sizeof(float3x2); out[4] = sizeof(float3x3); out[5] = sizeof(float3x4);
    out[6] = sizeof(float4x2); out[7] = sizeof(float4x3); out[8] = sizeof(float4x4);
    out[9] = sizeof(half2x2);
    float3x2 a = float3x2(float2(1, 4), float2(2, 5), float2(in[3], in[6]));
    float2 b = a * float3(1);
    out[10] = b.x; out[11] = b.y;
    float3 c = float2(1) * a;
    out[12] = c.x; out[13] = c.y; out[14] = c.z;
    float2x3 d = float2x3(1, 3, 5, 2, 4, 6);
    float4x2 wide(1.0f, 0.0f, 0.0f, 1.0f, 10.0f, 0.0f, 0.0f, 10.0f);
    float2x4 tall = transpose(wide);
    float4 e = tall * float2(in[1], in[2]);
    out[15] = e.z; out[16] = e.w; out[17] = e.z + e.w;
    float2x2 f = a * d;
    out[18] = f[0].x; out[19] = f[1].x; out[20] = f[0].y; out[21] = f[1].y;
    half4x3 g = half4x3(half3(1), half3(2), half3(3), half3(4));
    out[22] = g[2][1];
    half2x2 h = half2x2(float2x2(1, 0, 0, 2));
    out[23] = h[0][0]; out[24] = h[0][1]; out[25] = h[1].x; out[26] = h[1].y;
}
