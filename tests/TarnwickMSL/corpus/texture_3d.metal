// A solid texture: filtered between planes, shifted, read, measured.
// @texture 0 3d float 4x4x4 1 2
// @expects 51 | 212 | 312 2101 | 4 2 | 0 | 242
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], texture3d<float> solid [[texture(0)]]) {
    constexpr sampler smooth(filter::linear), nearby(mip_filter::nearest);
    out[0] = solid.sample(smooth, float3(0.125, 0.125, 0.25)).x;
    out[1] = solid.sample(nearby, float3(0.125), level(0), int3(1, 1, 2)).x;
    out[2] = solid.read(uint3(1, 1, 3)).x;
    out[3] = solid.read(ushort3(0, 0, 1), 1).x;
    out[4] = float(solid.get_depth());
    out[5] = float(solid.get_depth(1));
    out[6] = solid.read(uint3(0, 0, 4)).x;
    out[7] = float(solid.get_width(1) * 100 + solid.get_height() * 10 + solid.get_num_mip_levels());
}
