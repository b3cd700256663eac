// Lines in layers. A layer beyond the last is sampled as the last, and read as zero.
// @texture 0 1d_array int 4 3
// @expects 103 | 201 203 | 3 4 | 0 | 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], texture1d_array<int> lines [[texture(0)]]) {
    constexpr sampler s;
    out[0] = float(lines.read(2, 1).x);
    out[1] = float(lines.sample(s, 0.1, 2).x);
    out[2] = float(lines.sample(s, 0.6, 9).x);
    out[3] = float(lines.get_array_size());
    out[4] = float(lines.get_width());
    out[5] = float(lines.read(1, 3).x);
    out[6] = float(lines.get_num_mip_levels());
}
