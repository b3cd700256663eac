// A line of texels: read, sampled, measured.
// @texture 0 1d float 5
// @expects 3 4 | 1 | 5 5 | 0 | 2.5
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], texture1d<float> line [[texture(0)]]) {
    constexpr sampler nearby, smooth(filter::linear);
    out[0] = line.read(2).x;
    out[1] = line.read(ushort(2)).y;
    out[2] = float(line.get_num_mip_levels());
    out[3] = float(line.get_width());
    out[4] = line.sample(nearby, 0.9).x;
    out[5] = line.read(5).x;
    out[6] = line.sample(smooth, 0.4).x;
}
