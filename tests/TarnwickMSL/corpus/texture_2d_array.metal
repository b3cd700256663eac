// Pictures in layers, sampled, gathered and read, at offsets that are constant and that are not.
// @texture 0 2d_array float 6x4 3 2
// @expects 223 112 2111 | 112 | 135 | 111 112 102 101 | 3 6 2 | 32
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  texture2d_array<float> t [[texture(0)]]) {
    constexpr sampler s(filter::nearest, mip_filter::nearest, address::clamp_to_edge);
    float2 corner = float2(0.5 / 6, 0.5 / 4);
    out[0] = t.read(uint2(2, 2), 2).x;
    out[1] = t.sample(s, corner, 1, int2(1, 1)).x;
    out[2] = t.sample(s, float2(0.1, 0.9), 1, level(1)).x;
    out[3] = t.sample(s, corner, 1, level(0), int2(int(in[1]))).x;
    out[4] = t.sample(s, corner, 1, int2(int(in[4]), int(in[9]))).x;
    float4 four = t.gather(s, float2(1.0 / 6, 0.25), 1);
    for (int i = 0; i < 4; i++)
        out[5 + i] = four[i];
    out[9] = float(t.get_array_size());
    out[10] = float(t.get_width());
    out[11] = float(t.get_height(1));
    out[12] = float(t.get_width(1) * 10 + t.get_num_mip_levels());
}
