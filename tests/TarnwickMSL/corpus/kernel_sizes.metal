// Sizes of the grid and its threadgroups; the last threadgroups of a row are smaller.
// @runs check 10x3 4x2
// @expects 30*1 | 30 8 6
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device atomic_uint* counts [[buffer(2)]], uint2 at [[thread_position_in_grid]],
    uint2 grid [[threads_per_grid]], ushort2 groups [[threadgroups_per_grid]],
    uint2 threads [[threads_per_threadgroup]], uint2 full [[dispatch_threads_per_threadgroup]],
    ushort2 inside [[thread_position_in_threadgroup]], uint index [[thread_index_in_threadgroup]]) {
    uint2 wanted = min(uint2(4, 2), uint2(10, 3) - at / uint2(4, 2) * uint2(4, 2));
    bool isRight = all(grid == uint2(10, 3)) && all(groups == ushort2(3, 2)) &&
                   all(threads == wanted) && all(full == uint2(4, 2)) &&
                   index == inside.y * threads.x + inside.x;
    out[at.y * 10 + at.x] = isRight ? 1.0 : 0.0;
    if (index == 0) { out[30] = float(grid.x * grid.y); out[31] = float(full.x * full.y); out[32] = float(groups.x * groups.y); }
}
