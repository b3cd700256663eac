// Depths in layers, on cubes and on cubes in layers.
// @texture 0 2d_array depth 4x4 2
// @texture 1 cube depth 2x2
// @texture 2 cube_array depth 2x2 2
// @expects 112 | 1 0 | 212 | 1 0 | 1112 | 0 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], depth2d_array<float> layers [[texture(0)]],
                  depthcube<float> cube [[texture(1)]],
                  depthcube_array<float> cubes [[texture(2)]]) {
    constexpr sampler nearby, less(compare_func::less);
    float2 corner = 0.125;
    float3 right = float3(1, 0.9, 0.9), back = float3(0.9, 0.9, -1);
    out[0] = round(layers.read(uint2(1, 1), 1) * 8192);
    out[1] = layers.sample_compare(less, corner, 1, 100.0 / 8192);
    out[2] = layers.sample_compare(less, corner, 0, 100.0 / 8192);
    out[3] = round(cube.read(uint2(1, 1), 2) * 8192);
    out[4] = cube.sample_compare(less, back, 500.0 / 8192);
    out[5] = cube.sample_compare(less, right, 500.0 / 8192, level(0));
    out[6] = round(cubes.read(uint2(1, 1), 5, 1) * 8192);
    out[7] = cubes.sample_compare(less, back, 0, 1000.0 / 8192);
    out[8] = cubes.sample_compare(less, back, 1, 1000.0 / 8192);
}
