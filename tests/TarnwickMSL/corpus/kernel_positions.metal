// Where a thread stands, in one, two and three dimensions, in 16 and 32 bits.
// @runs check 6x4x2 2x2x2
// @expects 47*1 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device uint* misses [[buffer(2)]], uint3 at [[thread_position_in_grid]],
    ushort2 at2 [[thread_position_in_grid]], ushort3 inside [[thread_position_in_threadgroup]],
    uint2 group [[threadgroup_position_in_grid]], uint x [[thread_position_in_grid]],
    ushort index [[thread_index_in_threadgroup]]) {
    bool isRight = at2.x == at.x && at2.y == at.y && x == at.x && group.x == at.x / 2 &&
                   group.y == at.y / 2 && inside.x == at.x % 2 && inside.y == at.y % 2 &&
                   inside.z == at.z % 2 && index == inside.x + inside.y * 2 + inside.z * 4;
    out[at.x + at.y * 6 + at.z * 24] = isRight ? 1.0 : 0.0;
}
