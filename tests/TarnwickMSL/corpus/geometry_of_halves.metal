// dot, cross, length, distance, normalize, reflect, refract, faceforward of halves and floats (6.8).
// @expects 11 | 0 0 1 | 5 25 | 5 25 | 0.6 0.8 | 1 1 | 0 -1 | -1 | 0 | 14
// @within 1e-3
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    half2 a = half2(in[1], in[2]), b = half2(in[3], in[4]);
    out[0] = dot(a, b);
    half3 z = cross(half3(1, 0, 0), half3(0, half(in[1]), 0));
    out[1] = z.x; out[2] = z.y; out[3] = z.z;
    out[4] = length(b); out[5] = length_squared(b);
    out[6] = distance(float3(in[3], in[4], 0), float3(0)); out[7] = distance_squared(b, half2(0));
    half2 n = normalize(b);
    out[8] = n.x; out[9] = n.y;
    half2 r = reflect(half2(1, -1), half2(0, 1));
    out[10] = r.x; out[11] = r.y;
    float2 straight = refract(float2(in[0], -1), float2(0, 1), 0.5);
    out[12] = straight.x; out[13] = straight.y;
    out[14] = faceforward(float3(0, 0, in[1]), float3(0, 0, 1), float3(0, 0, 1)).z;
    float3 beyond = refract(normalize(float3(in[9], -1, 0)), float3(0, 1, 0), 2.0);
    out[15] = beyond.x;
    out[16] = dot(float4(in[1], in[2], in[3], 0), float4(1, 2, 3, 4));
}
