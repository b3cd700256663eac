// Records in stage records, arrays, matrices, packed vectors and base records: each value crosses by itself (5.2.4).
// @draws triangle 3
// @pixel 0 7 : 1 2 3 4
// @expects 5 6 | 7 8 | 9 10 | 11 12 | 13 15
#include <metal_stdlib>
using namespace metal;

struct Surface { float3 normal; float2 uv; };
struct Placed { float4 at [[position]]; float3x2 frame; };
struct Corner : Placed {
    Surface surface;
    float3 colours[2];
    array<half, 2> weights;
    packed_half3 tint;
};

vertex Corner corner(uint v [[vertex_id]]) {
    Corner c;
    c.at = float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1);
    c.frame = float3x2(float2(1, 2), float2(3, 4), float2(5, 6));
    c.surface = {float3(7, 8, 0), float2(9, 10)};
    c.colours[0] = float3(0); c.colours[1] = float3(0, 11, 0);
    c.weights = {0, 12};
    c.tint = packed_half3(13, 14, 15);
    return c;
}
fragment float4 taken(Corner in [[stage_in]], device float* out [[buffer(0)]]) {
    out[0] = in.frame[2].x; out[1] = in.frame[2].y;
    out[2] = in.surface.normal.x; out[3] = in.surface.normal.y;
    out[4] = in.surface.uv.x; out[5] = in.surface.uv.y;
    out[6] = in.colours[1].y; out[7] = in.weights[1];
    out[8] = in.tint.x; out[9] = in.tint.z;
    return float4(in.frame[0], in.frame[1]);
}
