// A cube by its directions, the faces in their order, and single texels by face.
// @texture 0 cube float 4x4 1 2
// @expects 1 101 201 301 401 501 | 212 | 2112 | 434 | 8 1 | 0
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], texturecube<float> cube [[texture(0)]]) {
    constexpr sampler s(filter::nearest, mip_filter::nearest);
    // Each the upper left texel of its face.
    const float3 corners[6] = {{1, 0.9, 0.9},  {-1, 0.9, -0.9}, {-0.9, 1, -0.9},
                               {-0.9, -1, 0.9}, {-0.9, 0.9, 1},  {0.9, 0.9, -1}};
    for (int face = 0; face < 6; face++)
        out[face] = cube.sample(s, corners[face]).x;
    out[6] = cube.read(uint2(1, 1), 2).x;
    out[7] = cube.read(ushort2(1, 1), 1, 1).x;
    out[8] = cube.gather(s, float3(0.5, -0.5, 1), component::x).y;
    out[9] = float(cube.get_width() + cube.get_height());
    out[10] = float(cube.get_num_mip_levels()) - 1;
    out[11] = cube.read(uint2(0), 6).x;
}
