// Cubes in layers.
// @texture 0 cube_array ushort 2x2 3
// @expects 601 1701 | 1212 | 3 | 0 | 221
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], texturecube_array<ushort> cubes [[texture(0)]]) {
    constexpr sampler s(filter::nearest);
    out[0] = float(cubes.sample(s, float3(1, 0.9, 0.9), 1).x);
    out[1] = float(cubes.sample(s, float3(0.9, 0.9, -1), 2, level(0)).x);
    out[2] = float(cubes.read(uint2(1, 1), 0, 2).x);
    out[3] = float(cubes.get_array_size());
    out[4] = float(cubes.read(uint2(0), 7, 0).x);
    out[5] = float(cubes.get_width() * 100 + cubes.get_height() * 10 + cubes.get_num_mip_levels());
}
