// Results for several targets, of different types; what has no target goes nowhere (5.2.3.5).
// @draws triangle 3
// @target 1 uint
// @target 3 half
// @pixel 2 3 : 2.5 3.5 1 1
// @pixel 2 3 1 : 2 3 0 1
// @pixel 6 1 3 : 6.5 0 0 1
#include <metal_stdlib>
using namespace metal;

struct Colours {
    float4 first [[color(0)]];
    uint4 second [[color(1)]];
    half2 third [[color(2)]];
    float4 fourth [[color(3)]];
};
struct Reordered { Colours inner; };

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1); }
fragment Colours several(float4 at [[position]]) {
    return {float4(at.xy, 1, 1), uint4(uint2(at.xy), 0, 1), half2(1), float4(at.x, 0, 0, 1)};
}
fragment Reordered nested(float4 at [[position]]) { return {{at, uint4(1), half2(2), 3}}; }
fragment int4 whole(float4 at [[position]]) { return int4(at); }
fragment half scalar() { return 0.5h; }
