// Samples of pixels; of a texture that is not there they are zero.
// @expects 0 0 0 0
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], texture2d_ms<float> one [[texture(0)]],
                  texture2d_ms_array<uint> many [[texture(1)]], depth2d_ms<float> far [[texture(2)]],
                  depth2d_ms_array<float> depths [[texture(3)]]) {
    out[0] = one.read(uint2(1, 2), 3).x * float(one.get_num_samples());
    out[1] = float(many.read(ushort2(1, 2), 1, 0).y * many.get_array_size());
    out[2] = far.read(uint2(0), 1);
    out[3] = depths.read(uint2(0), 1, 2) * float(depths.get_width() + depths.get_height());
}
