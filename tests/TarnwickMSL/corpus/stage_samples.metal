// sample_perspective makes the function run for each sample, sample_id tells which; all four are
// averaged into the pixel (5.4, 5.5).
// @draws triangle 3 samples
// @pixel 3 3 : 1.5 1 0.4375 0.4375
// @within 1e-4
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 at [[position]];
    float2 place [[sample_no_perspective]];
};

vertex Corner corner(uint v [[vertex_id]]) {
    float2 at = float2(v == 1 ? 3.0 : -1.0, v == 2 ? 3.0 : -1.0);
    return {float4(at, 0.5, 1), float2(0.5, -0.5) * at + 0.5};
}
fragment float4 each(Corner in [[stage_in]], uint sample [[sample_id]]) {
    return float4(sample, 1, in.place);
}
