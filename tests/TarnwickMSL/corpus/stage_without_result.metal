// A fragment function that gives nothing but writes into a buffer (5.1.2).
// @draws triangle 3
// @pixel 2 2 : 0 0 0 0
// @expects 0 1 2 3
#include <metal_stdlib>
using namespace metal;

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1); }
fragment void noted(float4 at [[position]], device float* out [[buffer(0)]]) {
    if (uint(at.y) == 0) out[uint(at.x)] = uint(at.x);
}
