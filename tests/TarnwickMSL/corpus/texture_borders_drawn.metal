// Borders at the level that neighbouring pixels choose: each pixel is two texels, so the second level.
// @texture 0 2d float 8x8 1 2
// @draws triangle 3
// @within 1e-3
// @pixel 0 0 : 0 1 0 4
// @pixel 3 3 : 2012 2012 2014.75 178
// @pixel 5 5 : 2034 2034 1144.125 178
// @pixel 6 3 : 0 1 0 178
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 position [[position]];
    float2 uv;
};

vertex Corner corner(uint id [[vertex_id]]) {
    float2 p = float2((id << 1) & 2, id & 2);
    return {float4(p * 2 - 1, 0, 1), float2(p.x, 1 - p.y) * 2 - 0.5};
}

fragment float4 colored(Corner in [[stage_in]], texture2d<float> t [[texture(0)]]) {
    constexpr sampler zero(address::clamp_to_zero, filter::linear, mip_filter::nearest),
        white(address::clamp_to_border, border_color::opaque_white, mip_filter::nearest);
    float4 corners = t.gather(white, float2(0.9375)), outside = t.gather(white, float2(1.5));
    float sum = outside.x + outside.y + outside.z + outside.w;
    return float4(t.sample(zero, in.uv).x, t.sample(white, in.uv).x, t.sample(zero, in.uv + 0.0625).x,
                  in.uv.x < 0 ? sum : corners.w + 100 * corners.x);
}
