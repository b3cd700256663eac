// Fragment functions sample as the samplers say that they are given, and compare with depths.
// @texture 0 2d float 8x8 1 2
// @texture 1 2d depth 8x8
// @sampler 0 linear mip_nearest repeat
// @sampler 3 less
// @draws triangle 3
// @pixel 2 3 : 44 0 44 2014.25
// @pixel 6 3 : 48 1 48 2016.25
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

fragment float4 colored(Corner in [[stage_in]], texture2d<float> t [[texture(0)]],
                        depth2d<float> depths [[texture(1)]], sampler how [[sampler(0)]],
                        sampler compared [[sampler(3)]]) {
    float2 below = in.uv + float2(0, 0.125);
    return float4(t.sample(how, in.uv + float2(1.125, -1)).x + 10,
                  depths.sample_compare(compared, in.uv, 34.5 / 8192), t.sample(how, below).x + 1,
                  t.sample(how, in.uv, level(1)).x);
}
