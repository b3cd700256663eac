// Depths, and comparisons: the reference stands left of the comparison, filters mix its outcomes.
// @texture 0 2d depth 4x4 1 2
// @expects 1 12 | 1 0 1 | 0.5 0.5 | 1 1 0 0 | 11 12 2 1 | 4
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], depth2d<float> depths [[texture(0)]]) {
    constexpr sampler nearby, less(compare_func::less), greater(compare_func::greater),
        mixed(compare_func::less_equal, filter::linear);
    float2 corner = 0.125, middle = 0.25;
    out[0] = depths.sample(nearby, corner) * 8192;
    out[1] = depths.read(uint2(1, 1)) * 8192;
    out[2] = depths.sample_compare(less, corner, 0.5 / 8192);
    out[3] = depths.sample_compare(greater, corner, 0.5 / 8192);
    out[4] = depths.sample_compare(greater, corner, 0.5, level(0));
    out[5] = depths.sample_compare(mixed, middle, 5.0 / 8192);
    out[6] = depths.sample_compare(mixed, corner, 5.0 / 8192, level(0), int2(0, 0)) +
             depths.sample_compare(mixed, middle, 5.0 / 8192, gradient2d(float2(0), float2(0)));
    float4 compared = depths.gather_compare(mixed, middle, 5.0 / 8192);
    float4 gathered = depths.gather(nearby, middle) * 8192;
    for (int i = 0; i < 4; i++) {
        out[7 + i] = compared[i];
        out[11 + i] = gathered[i];
    }
    out[15] = float(depths.get_width());
}
