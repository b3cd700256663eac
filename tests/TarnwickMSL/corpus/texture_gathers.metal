// Four texels' components, from the lower left one on, counter-clockwise; at offsets.
// @texture 0 2d int 4x4
// @expects 11 12 2 1 | 14 15 5 4 | 23 24 14 13 | 4*10
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], texture2d<int> t [[texture(0)]]) {
    constexpr sampler s;
    int4 rows[4] = {t.gather(s, float2(0.25)), t.gather(s, float2(0.25), int2(0), component::w),
                    t.gather(s, float2(0.25), int2(1, 1), component::y), t.gather(s, float2(0.25))};
    rows[3] = int4(10);
    for (int row = 0; row < 4; row++)
        for (int i = 0; i < 4; i++)
            out[row * 4 + i] = float(rows[row][i]);
}
