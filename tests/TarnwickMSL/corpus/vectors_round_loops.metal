// Vectors and matrices that loops carry while one of their lanes is a factor: turns of the plane, sums
// beside them, octaves, a vector times its own lane, in loops whose rounds are known at run time alone.
// @expects 11 23 | 2 1 | 42 54 | 162 243 | 8 17 9 | 2 | 0 0 0 1
#include <metal_stdlib>
using namespace metal;

float2 turned(float2 q, float2x2 turn, float2 step, int rounds) {
    for (int i = 0; i < rounds; i++) q = turn * q + step;
    return q;
}

float octaves(float2 q, int rounds) {
    const float2x2 octave = float2x2(float2(0.0, 2.0), float2(-2.0, 0.0));
    float sum = 0.0, weight = 1.0;
    for (int i = 0; i < rounds; i++) {
        sum += weight * dot(q, float2(1.0, 0.5));
        q = octave * q;
        weight *= 0.5;
    }
    return sum;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    int rounds = int(in[3]);
    float2 a = turned(float2(in[1], in[2]), float2x2(2.0), float2(1.0, in[1]), rounds);
    out[0] = a.x - 4.0;
    out[1] = a.y;
    float2 b = turned(float2(in[1], in[2]), float2x2(float2(0, 1), float2(-1, 0)), float2(0.0), rounds);
    out[2] = b.x;
    out[3] = -b.y;
    float2 c = float2(in[1], in[2]);
    for (int i = 0; i < rounds; i++) c = c.x * (c + 1.0);
    out[4] = c.x;
    out[5] = c.y;
    float2 d = float2(in[2], in[3]);
    for (int i = 0; i < rounds + 1; i++) d *= d.yx.x / d.y * 3.0;
    out[6] = d.x;
    out[7] = d.y;
    float3 e = float3(in[1], in[2], in[3]);
    float3x3 m = float3x3(float3(1, 0, 0), float3(0, 0, 1), float3(0, 1, 0));
    for (int i = 0; i < rounds; i++) {
        if (e.z > 5.0) break;
        e = m * e + e.x * float3(1.0, 2.0, 1.0);
        m = transpose(m) * m;
    }
    for (int i = 0; i < 3; i++) out[8 + i] = e[i];
    out[11] = octaves(float2(in[4], in[0]), rounds);
    float4x4 n = float4x4(1.0);
    for (int i = 0; i < rounds; i++) n = n * float4x4(n[3], n[2], n[1], n[0]);
    for (int i = 0; i < 4; i++) out[12 + i] = n[i][0];
}
