// A triangle over the picture and a smaller one before it: vertex_id, instance_id, position as it
// comes out of the vertex function and goes into the fragment function (5.2.3, 5.2.4).
// @draws triangle 3 2 depth
// @pixel 0 0 : 0.5 0.5 0.75 1
// @pixel 7 2 : 7.5 2.5 0.75 1
// @pixel 2 7 : 2.5 7.5 0.25 1
#include <metal_stdlib>
using namespace metal;

struct Corner { float4 at [[position]]; };

vertex Corner corner(uint v [[vertex_id]], uint i [[instance_id]]) {
    float2 at = float2(v == 1 ? 3.0 : -1.0, v == 2 ? 3.0 : -1.0);
    if (i == 1) at = 0.5 * at - 0.5; // the lower left
    return {float4(at, i == 0 ? 0.75 : 0.25, 1.0)};
}
fragment float4 place(Corner in [[stage_in]]) { return float4(in.at.xyz, 1.0 / in.at.w); }
