// SIMD-group and quad attributes and functions in a fragment function: neighbours in x and y are in
// one quad, and the four lanes of a quad follow each other (5.2.3.4, 6.9.2, 6.9.3). The pixels are away
// from the diagonal, where a device may divide the triangle.
// @draws triangle 3
// @pixel 1 0 : 4 1 1 1
// @pixel 6 7 : 4 1 1 1
// @pixel 3 3 : 4 1 1 1
#include <metal_stdlib>
using namespace metal;

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1); }
fragment float4 groups(float4 at [[position]], ushort lane [[thread_index_in_simdgroup]],
                       ushort size [[threads_per_simdgroup]], uint inQuad [[thread_index_in_quadgroup]]) {
    float across = abs(quad_shuffle_xor(at.x, 1) - at.x), down = abs(quad_shuffle_xor(at.y, 2) - at.y);
    bool isPlaced = (uint(at.x) & 1) == (inQuad & 1) && (uint(at.y) & 1) == inQuad / 2;
    bool isNumbered = lane % 4 == inQuad && lane < size;
    simdgroup_barrier(mem_flags::mem_device);
    bool hasSums = simd_sum(1.0f) == simd_max(simd_prefix_inclusive_sum(1.0f)) && simd_all(true) && !simd_any(at.x < 0);
    return float4(quad_sum(1.0f), across * down, isPlaced && isNumbered, hasSums);
}
