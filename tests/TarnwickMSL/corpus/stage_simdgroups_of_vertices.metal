// SIMD-group functions in a vertex function. The packaged CPU driver has no SIMD-groups there, so
// this program is compiled and drawn by nobody.
#include <metal_stdlib>
using namespace metal;

vertex float4 corner(uint v [[vertex_id]], device uint* least [[buffer(0)]]) {
    least[v] = simd_min(v) + quad_broadcast(v, 0);
    return float4(simd_any(v == 1), 0, 0, 1);
}
