// Columns and elements as targets, compound assignment, matrices in structs and arrays.
// @expects 5 6 | 9 | 10 7 | 1 0 0 1 | 3 4 | 24
#include <metal_stdlib>
using namespace metal;

struct Frame { float3x3 axes; float2x2 turns[2]; };
float3x3 diagonal(float a, float b, float c) { return float3x3(float3(a, 0, 0), float3(0, b, 0), float3(0, 0, c)); }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float2x2 m = float2x2(float2(in[1], in[2]), float2(in[3], in[4]));
    m[1] = float2(in[5], in[6]);
    out[0] = m[1].x; out[1] = m[1].y;
    m[int(in[0])][1] = in[9];
    out[2] = m[0][1];
    m += m;
    out[3] = m[1][0];
    m -= float2x2(float2(0.0), float2(5.0));
    out[4] = m[1].y;
    float2x2 unit = float2x2(1.0);
    out[5] = unit[0][0]; out[6] = unit[0][1]; out[7] = unit[1][0]; out[8] = unit[1][1];
    Frame frame;
    frame.axes = diagonal(in[2], in[3], in[4]);
    frame.turns[0] = float2x2(0.0);
    frame.turns[int(in[1])] = float2x2(float2(in[3], in[4]), float2(0.0));
    out[9] = frame.turns[1][0].x; out[10] = frame.turns[1][0].y;
    frame.axes *= float3x3(1.0);
    out[11] = determinant(frame.axes);
}
