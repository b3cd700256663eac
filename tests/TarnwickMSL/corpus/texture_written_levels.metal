// A level of its own is written; the others stay.
// @texture 0 2d uint 8x4 1 3
// @runs paint 4x2
// @runs check
// @expects 77 | 12 | 4001 | 4
#include <metal_stdlib>
using namespace metal;

kernel void paint(texture2d<uint, access::write> picture [[texture(0)]],
                  device float* out [[buffer(0)]], uint2 at [[thread_position_in_grid]]) {
    picture.write(uint4(77), at, 1);
    out[3] = float(picture.get_width(1));
}

kernel void check(device float* out [[buffer(0)]], texture2d<uint> picture [[texture(0)]]) {
    out[0] = float(picture.read(uint2(3, 1), 1).x);
    out[1] = float(picture.read(uint2(1, 1)).x);
    out[2] = float(picture.read(uint2(0), 2).x);
}
