// Length, distance, products, normals and reflections.
// @expects 5 25 | 11 | 0 0 1 | 0.6 0.8 | 1 1 | -1 -2 | 13
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float2 a = float2(in[3], in[4]);
    out[0] = length(a); out[1] = length_squared(a);
    out[2] = dot(a, float2(in[1], in[2]));
    float3 z = cross(float3(in[1], 0, 0), float3(0, in[1], 0));
    out[3] = z.x; out[4] = z.y; out[5] = z.z;
    float2 n = normalize(a);
    out[6] = n.x; out[7] = n.y;
    float2 r = reflect(float2(in[1], -in[1]), float2(0.0, 1.0));
    out[8] = r.x; out[9] = r.y;
    float2 f = faceforward(float2(in[1], in[2]), float2(0.0, 1.0), float2(0.0, 1.0));
    out[10] = f.x; out[11] = f.y;
    out[12] = distance(float2(in[5], in[12]), float2(0.0));
}
