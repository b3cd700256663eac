// Attributes of a kernel, of the element at the thread's position and of the first element (5.2.4).
// @attribute 0 float3 0 1
// @attribute 1 float 8 1
// @attribute 2 uchar4Normalized 0 2
// @attribute 3 uint 4 2
// @layout 1 12 x
// @layout 2 8 constant
// @runs fill 1
// @runs check 4x2 3x1
// @expects 2 5.2 8.2 11.2 | 0 3.2 6.2 9.2
// @expects 5 11 17 23 | 105 111 117 123
// @within 1e-5
#include <metal_stdlib>
using namespace metal;

kernel void fill(device uint* words [[buffer(2)]]) {
    words[0] = 0x00ff3300;
    words[1] = 100;
}

struct In {
    float2 first [[attribute(0)]];
    half last [[attribute(1)]];
    float4 colour [[attribute(2)]];
    uint hundred [[attribute(3)]];
};

kernel void check(In in [[stage_in]], device float* out [[buffer(0)]],
                  uint2 at [[thread_position_in_grid]]) {
    const uint i = at.y * 4 + at.x;
    out[i] = float(in.last) * (1 - at.y) + in.first.x * at.y + (at.x ? in.colour.g : 0.0f);
    out[8 + i] = in.first.x + in.first.y + 4 * in.colour.b + in.hundred * at.y;
}
