// Sizes and alignments that the host relies on, and members read from a record in a buffer.
// @expects 16 8 16 | 32 48 | 2 16 4 | 24
#include <metal_stdlib>
using namespace metal;

struct Plain { float2 a; float b; float c; float2 d; uint e; uint f; };
struct Padded { float a; float3 b; float2 c; };

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = float(sizeof(float3)); out[1] = float(alignof(float2)); out[2] = float(alignof(float3));
    out[3] = float(sizeof(Plain)); out[4] = float(sizeof(Padded));
    out[5] = float(sizeof(half)); out[6] = float(sizeof(float2x2)); out[7] = float(sizeof(bool4));
    Plain plain = {float2(in[1]), in[2], in[3], float2(in[4]), uint(in[5]), uint(in[6])};
    out[8] = plain.a.x + plain.b + plain.c + plain.d.y + float(plain.e) + float(plain.f) + in[3];
}
