// Addresses, borders and filters of constexpr samplers; coordinates in pixels.
// @texture 0 2d float 4x4
// @expects 4 | 0 | 1 | 2 | 3 | 0 0 1 | 1 1 1 | 3 6 | 6 | 0.5
#include <metal_stdlib>
using namespace metal;

constant sampler far(coord::pixel, filter::nearest, address::clamp_to_edge);

kernel void check(device float* out [[buffer(0)]], texture2d<float> t [[texture(0)]]) {
    constexpr sampler edge(address::clamp_to_edge), zero(address::clamp_to_zero),
        repeat(address::repeat), mirror(address::mirrored_repeat),
        across(s_address::repeat, t_address::clamp_to_zero),
        black(address::clamp_to_border, border_color::opaque_black),
        white(address::clamp_to_border, border_color::opaque_white),
        pixels(coord::pixel, filter::linear), smooth(mag_filter::linear, min_filter::nearest,
                                                     max_anisotropy(4), lod_clamp(0.0, 2.0));
    out[0] = t.sample(edge, float2(1.6, 0.1)).x;
    out[1] = t.sample(zero, float2(1.6, 0.1)).w;
    out[2] = t.sample(repeat, float2(1.1, 0.1)).x;
    out[3] = t.sample(repeat, float2(-0.6, 0.1)).x;
    out[4] = t.sample(mirror, float2(-0.6, 0.1)).x;
    out[5] = t.sample(across, float2(0.1, 1.1)).x;
    out[6] = t.sample(black, float2(1.1)).x;
    out[7] = t.sample(black, float2(1.1)).w;
    out[8] = t.sample(white, float2(1.1)).x;
    out[9] = t.sample(across, float2(2.1, 0.1)).x;
    out[10] = t.sample(white, float2(-0.1, 0.5)).w;
    out[11] = t.sample(far, float2(2.9, 0)).x;
    out[12] = t.sample(pixels, float2(1.0, 1.0)).x - 0.5;
    out[13] = t.sample(smooth, float2(0.25, 0.25)).x - 0.5;
    out[14] = t.sample(smooth, float2(0.25, 0.125)).x - 1;
}
