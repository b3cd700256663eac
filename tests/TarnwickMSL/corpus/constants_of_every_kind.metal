// Constants at program scope: records, matrices, halves, bools, texts, of templates, from each other (4.2).
// @expects 3 | 4 6 | 1.5 | 1 | 98 3 | 7 | 2 | 12
#include <metal_stdlib>
using namespace metal;

struct Light { float3 colour; float power; };
constant Light lights[] = {{float3(1, 2, 3), 4}, {{5, 6, 7}, 8}};
constant int count = sizeof(lights) / sizeof(lights[0]);
constant float2x2 turn = float2x2(float2(0, 2), float2(-2, 0)) * 2.0;
constant half3 tint = half3(0.5, 1, 1.5);
constant bool flags[3] = {false, true, false};
constant char text[] = "abc";
constexpr constant uint mask = (1u << 3) - 1;
constant constexpr float ratio = float(mask) / 7 + 1;
static constant float3 sum = float3(1, 2, 3) + float3(4);
constant struct { int a, b; } pair = {5, 12};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = lights[int(in[0])].colour.z;
    float2 v = turn * float2(in[1], in[1]);
    out[1] = v.y; out[2] = lights[count - 1].colour.y;
    out[3] = tint[int(in[2])];
    out[4] = flags[int(in[1])];
    out[5] = text[int(in[1])]; out[6] = sizeof(text) - 1;
    out[7] = sum[int(in[2])];
    out[8] = ratio;
    out[9] = pair.b;
}
