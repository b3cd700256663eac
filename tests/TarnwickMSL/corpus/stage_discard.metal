// discard_fragment ends what a pixel gives, but not derivatives around it (6.10.1.3).
// @draws triangle 3
// @pixel 2 3 : 0 0 0 0
// @pixel 3 3 : 1 0 0 1
#include <metal_stdlib>
using namespace metal;

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1); }
fragment float4 odd(float4 at [[position]]) {
    if ((uint(at.x) & 1) == 0) discard_fragment();
    return float4(dfdx(at.x), dfdy(at.x), 0, 1);
}
