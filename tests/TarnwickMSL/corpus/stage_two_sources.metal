// Two sources of blending: the second is what is left of the target.
// @draws triangle 3 1 twice sources
// @pixel 1 6 : 1.5 1.25 1 2
#include <metal_stdlib>
using namespace metal;

struct Sources {
    float4 added [[color(0), index(0)]];
    float4 left [[color(0), index(1)]];
};

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1); }
fragment Sources shade() { return {float4(1), float4(0.5, 0.25, 0, 1)}; }
