// Arrays of textures, at indices that are known and that are not; textures in records.
// @texture 1 2d float 4x4
// @texture 2 2d float 2x2
// @texture 3 2d float 8x2
// @expects 4 2 8 | 14 | 14 12 | 24 | 3
#include <metal_stdlib>
using namespace metal;

struct Pair {
    texture2d<float> first, second;
    float widths() const { return float(first.get_width() + second.get_width()); }
};

static float total(array<texture2d<float>, 3> all) {
    float sum = 0;
    for (uint i = 0; i < all.size(); i++)
        sum += float(all[i].get_width());
    return sum;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  array<texture2d<float>, 3> all [[texture(1)]]) {
    for (int i = 0; i < 3; i++)
        out[i] = float(all[int(in[i])].get_width());
    out[3] = total(all);
    int chosen = int(in[2]);
    out[4] = all[chosen].read(uint2(3, 1)).x;
    out[5] = all[chosen - 1].read(uint2(1, 1)).x;
    out[6] = Pair{all[0], all[1]}.widths() * 4;
    out[7] = float(all.size());
}
