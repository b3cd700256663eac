// A fragment function that gives the reference of the stencil test (5.2.3.5).
// @draws triangle 3
// @pixel 4 4 : 4 4 1 1
#include <metal_stdlib>
using namespace metal;

struct Drawn {
    float4 colour [[color(0)]];
    uint reference [[stencil]];
};

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1); }
fragment Drawn drawn(float4 at [[position]]) { return {float4(floor(at.xy), 1, 1), uint(at.x)}; }
