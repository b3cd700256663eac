// Levels of detail: asked for, mixed, read, and the sizes that they have.
// @texture 0 2d float 8x4 1 3
// @expects 2011 4001 | 2000 | 2012 4002 | 8 4 2 | 4 2 1 | 3
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], texture2d<float> t [[texture(0)]]) {
    constexpr sampler nearby(mip_filter::nearest), between(mip_filter::linear);
    out[0] = t.sample(nearby, float2(0.1, 0.9), level(1.2)).x;
    out[1] = t.sample(nearby, float2(0.1, 0.9), level(9)).x;
    out[2] = t.sample(between, float2(0.01), level(1.5)).x - t.sample(between, float2(0.01), level(0.5)).x;
    out[3] = t.read(uint2(1, 1), 1).x;
    out[4] = t.read(ushort2(1, 0), 2).x;
    for (uint lod = 0; lod < 3; lod++) {
        out[5 + lod] = float(t.get_width(lod));
        out[8 + lod] = float(t.get_height(lod));
    }
    out[11] = float(t.get_num_mip_levels());
}
