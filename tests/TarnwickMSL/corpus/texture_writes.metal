// Written, and read by a later kernel. What is written outside goes nowhere.
// @texture 0 2d float 4x4
// @texture 1 2d_array uint 4x4 2
// @texture 2 3d half 4x4x4
// @runs paint 8x8
// @runs check
// @expects 5 | 3 | 107 | 2 | 34 | 0.5 1
#include <metal_stdlib>
using namespace metal;

kernel void paint(texture2d<float, access::write> picture [[texture(0)]],
                  texture2d_array<uint, access::write> layers [[texture(1)]],
                  texture3d<half, access::write> solid [[texture(2)]],
                  uint2 at [[thread_position_in_grid]]) {
    picture.write(float4(at.x + 4.0, at.y, 0, 1), at);
    layers.write(uint4(at.x + 100, at.y, 7, 8), at, 1);
    solid.write(half4(0.5h, half(at.x), half(at.y), 1.0h), uint3(at, 2));
}

kernel void check(device float* out [[buffer(0)]], texture2d<float> picture [[texture(0)]],
                  texture2d_array<uint> layers [[texture(1)]],
                  texture3d<half> solid [[texture(2)]]) {
    out[0] = picture.read(uint2(1, 3)).x;
    out[1] = picture.read(uint2(1, 3)).y;
    out[2] = float(layers.read(uint2(0, 2), 1).x + layers.read(uint2(0, 2), 1).z);
    out[3] = float(layers.read(uint2(0, 2), 1).y);
    out[4] = float(layers.read(uint2(3, 3), 0).x);
    out[5] = float(solid.read(uint3(1, 2, 2)).x);
    out[6] = float(solid.read(uint3(1, 2, 2)).y);
}
