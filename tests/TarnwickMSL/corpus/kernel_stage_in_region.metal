// The region of the elements that the threads of a kernel read (5.2.3.6, 5.2.4).
// @attribute 0 float 0 1
// @attribute 1 uint 0 2
// @layout 1 4 x
// @layout 2 4 y_indexed
// @runs fill 1
// @runs check 3x2 2x1 5 1 4 7
// @expects 5 6 7 5 6 7 | 102 102 102 103 103 103 | 5 1 0 | 4 7 | 3 2
// @runs plain 2
// @expects 2 2 | 0 0
#include <metal_stdlib>
using namespace metal;

struct In {
    float column [[attribute(0)]];
    uint listed [[attribute(1)]];
};

kernel void fill(device uint* words [[buffer(2)]]) {
    words[0] = 90;
    for (uint i = 1; i < 16; i++)
        words[i] = i + 4;
    words[5] = 102;
    words[6] = 103;
}

kernel void check(In in [[stage_in]], device float* out [[buffer(0)]],
                  uint2 at [[thread_position_in_grid]], uint3 origin [[grid_origin]],
                  ushort2 size [[grid_size]], uint2 threads [[threads_per_grid]]) {
    const uint i = at.y * 3 + at.x;
    out[i] = in.column;
    out[6 + i] = in.listed;
    if (i > 0)
        return;
    out[12] = origin.x;
    out[13] = origin.y;
    out[14] = origin.z;
    out[15] = size.x;
    out[16] = size.y;
    out[17] = threads.x;
    out[18] = threads.y;
}

kernel void plain(device float* out [[buffer(0)]], uint at [[thread_position_in_grid]],
                  uint size [[grid_size]], uint origin [[grid_origin]]) {
    out[19 + at] = size;
    out[21 + at] = origin;
}
