// simd_is_helper_thread: a thread that discarded its fragment goes on as a helper, whose value its
// neighbour's derivative sees (6.10).
// @draws triangle 3
// @pixel 2 3 : 1 0 0 1
// @pixel 4 6 : 1 0 0 1
// @pixel 3 3 : 0 0 0 0
#include <metal_stdlib>
using namespace metal;

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1); }
fragment float4 columns(float4 at [[position]]) {
    float before = simd_is_helper_thread();
    if (uint(at.x) % 2 == 1) discard_fragment();
    float helps = simd_is_helper_thread();
    return float4(dfdx(helps), dfdx(before), helps, 1);
}
