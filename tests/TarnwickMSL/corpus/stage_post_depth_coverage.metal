// post_depth_coverage: the samples that pass the depth test. The near triangle hides samples 0 and 2
// of the pixels that it half covers, and all of those to the left (5.2.3.4).
// @draws triangle 3 2 samples depth
// @pixel 4 3 : 5 0.5 0 1
// @pixel 6 3 : 15 0 0 1
// @pixel 1 3 : 0 1 0 1
#include <metal_stdlib>
using namespace metal;

struct Corner { float4 at [[position]]; uint instance [[flat]]; };

vertex Corner corner(uint v [[vertex_id]], uint i [[instance_id]]) {
    float2 near = v == 0 ? float2(0.125, -20) : v == 1 ? float2(0.125, 20) : float2(-20, 0);
    float2 far = float2(v == 1 ? 3 : -1, v == 2 ? 3 : -1);
    return {i == 0 ? float4(near, 0.25, 1) : float4(far, 0.5, 1), i};
}
[[early_fragment_tests]] fragment float4 seen(Corner in [[stage_in]],
                                              uint covered [[sample_mask, post_depth_coverage]]) {
    return in.instance == 0 ? float4(0, 1, 0, 1) : float4(covered, 0, 0, 1);
}
