// The level follows from neighbouring pixels: eight of them across sixteen texels take the second.
// @texture 0 2d float 16x16 1 4
// @texture 1 cube float 8x8 1 3
// @draws triangle 3
// @pixel 4 4 : 1 2 3 2
// @pixel 2 6 : 1 2 3 2
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 position [[position]];
    float2 uv;
};

vertex Corner corner(uint id [[vertex_id]]) {
    float2 p = float2((id << 1) & 2, id & 2);
    return {float4(p * 2 - 1, 0, 1), float2(p.x, 1 - p.y)};
}

static float levelOf(float4 texel) { return floor(texel.x / 2000); }

fragment float4 colored(Corner in [[stage_in]], texture2d<float> t [[texture(0)]],
                        texturecube<float> cube [[texture(1)]]) {
    constexpr sampler s(mip_filter::nearest);
    float3 direction = float3(in.uv * 2 - 1, 1).zyx;
    float sum = levelOf(t.sample(s, in.uv, min_lod_clamp(2.2))) +
                levelOf(cube.sample(s, direction, bias(0))) * 2;
    return float4(levelOf(t.sample(s, in.uv)), levelOf(t.sample(s, in.uv, bias(1))),
                  levelOf(t.sample(s, in.uv, bias(1), min_lod_clamp(3))), sum);
}
