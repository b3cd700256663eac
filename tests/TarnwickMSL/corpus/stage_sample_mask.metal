// sample_mask in and out: half of the samples leave half of the colour (5.2.3.4, 5.2.3.5).
// @draws triangle 3 samples
// @pixel 1 1 : 0.5 7.5 0 0.5
// @pixel 7 1 : 0.25 3.75 0 0.25
#include <metal_stdlib>
using namespace metal;

struct Seen { float4 colour [[color(0)]]; uint mask [[sample_mask]]; };

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1); }
fragment Seen seen(float4 at [[position]], uint covered [[sample_mask]]) {
    return {float4(1, covered, 0, 1), at.x < 4 ? 5u : 8u};
}
