// get_num_samples and get_sample_position: each sample's place in its pixel is where its inputs are
// interpolated (6.10). All four samples are averaged.
// @draws triangle 3 samples
// @pixel 3 3 : 4 1 0.5 0.5
// @within 1e-3
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 at [[position]];
    float2 place [[sample_no_perspective]];
};

vertex Corner corner(uint v [[vertex_id]]) {
    float2 at = float2(v == 1 ? 3.0 : -1.0, v == 2 ? 3.0 : -1.0);
    return {float4(at, 0.5, 1), float2(4, -4) * at + 4};
}
fragment float4 each(Corner in [[stage_in]], uint sample [[sample_id]]) {
    float2 there = get_sample_position(sample);
    return float4(get_num_samples(), distance(fract(in.place), there) < 1e-3, there);
}
