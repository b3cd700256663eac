// front_facing, primitive_id, and triangles of both windings: clockwise ones face front (5.2.3.4).
// @draws triangle 6
// @pixel 0 7 : 1 0 0 1
// @pixel 7 0 : 0 1 0 1
#include <metal_stdlib>
using namespace metal;

struct Corner { float4 at [[position]]; };

constant float2 corners[6] = {float2(-1, -1), float2(-1, 0), float2(0, -1),
                              float2(1, 1), float2(0, 1), float2(1, 0.01)};

vertex Corner corner(uint v [[vertex_id]]) { return {float4(corners[v], 0, 1)}; }
fragment float4 facing(Corner in [[stage_in]], bool front [[front_facing]],
                       uint primitive [[primitive_id]]) {
    return float4(front, primitive, 0, 1);
}
