// Vertex functions sample the first level, and any that they ask for.
// @texture 0 2d float 2x2 1 2
// @draws triangle 3
// @pixel 4 4 : 12 2001 1 0
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 position [[position]];
    float4 color;
};

vertex Corner corner(uint id [[vertex_id]], texture2d<float> t [[texture(0)]]) {
    constexpr sampler s(mip_filter::nearest);
    float2 p = float2((id << 1) & 2, id & 2);
    return {float4(p * 2 - 1, 0, 1),
            float4(t.sample(s, float2(0.9)).x, t.sample(s, float2(0.9), level(1)).x,
                   t.read(uint2(0)).x, t.read(uint2(2)).x)};
}

fragment float4 colored(Corner in [[stage_in]]) { return in.color; }
