// The level that given gradients ask for, no lower than a least one.
// @texture 0 2d float 8x8 1 4
// @texture 1 3d float 8x8x8 1 4
// @texture 2 cube float 8x8 1 4
// @expects 0 1 2 3 | 2 3 | 1 2 | 1 2 3 | 1 2
#include <metal_stdlib>
using namespace metal;

constexpr sampler s(mip_filter::nearest);
static float levelOf(float4 texel) { return floor(texel.x / 2000); }

kernel void check(device float* out [[buffer(0)]], texture2d<float> flat [[texture(0)]],
                  texture3d<float> solid [[texture(1)]], texturecube<float> cube [[texture(2)]]) {
    for (int i = 0; i < 4; i++) {
        float2 step = float2(float(1 << i) / 8, 0);
        out[i] = levelOf(flat.sample(s, float2(0.1), gradient2d(step, step.yx)));
    }
    gradient2d two(float2(0.25, 0), float2(0, 0.25));
    out[4] = levelOf(flat.sample(s, float2(0.1), two, min_lod_clamp(2)));
    out[5] = levelOf(flat.sample(s, float2(0.1), level(3)));
    gradient3d deep(float3(0, 0, 0.25), float3(0));
    out[6] = levelOf(solid.sample(s, float3(0.1), deep));
    out[7] = levelOf(solid.sample(s, float3(0.1), deep, min_lod_clamp(1.6)));
    // A face is two wide: half of a unit is two of its eight texels.
    gradientcube across(float3(0, 0.5, 0), float3(0, 0, 0.5));
    float3 right = float3(1, 0.1, 0.2);
    out[8] = levelOf(cube.sample(s, right, across));
    out[9] = levelOf(cube.sample(s, right * 3, gradientcube(across.dPdx * 6, across.dPdy * 6)));
    out[10] = levelOf(cube.sample(s, right, across, min_lod_clamp(3)));
    out[11] = levelOf(cube.sample(s, right, across, min_lod_clamp(0.5)));
    out[12] = levelOf(cube.sample(s, right, gradientcube(across.dPdx * 2, float3(0)),
                                  min_lod_clamp(1)));
}
