// The level that would be taken, within the texture's and as computed.
// @texture 0 2d float 16x16 1 2
// @texture 1 3d float 8x8x8 1 2
// @draws triangle 3
// @within 1e-3
// @pixel 4 4 : 1 2 0 0
// @pixel 1 6 : 1 2 0 0
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 position [[position]];
    float2 uv;
};

vertex Corner corner(uint id [[vertex_id]]) {
    float2 p = float2((id << 1) & 2, id & 2);
    return {float4(p * 2 - 1, 0, 1), float2(p.x, 1 - p.y) * 2};
}

fragment float4 colored(Corner in [[stage_in]], texture2d<float> t [[texture(0)]],
                        texture3d<float> solid [[texture(1)]]) {
    constexpr sampler s(mip_filter::linear);
    float2 less = in.uv * 0.5;
    return float4(t.calculate_clamped_lod(s, in.uv), t.calculate_unclamped_lod(s, in.uv),
                  solid.calculate_clamped_lod(s, float3(less, 0)),
                  solid.calculate_unclamped_lod(s, float3(less, 0)));
}
