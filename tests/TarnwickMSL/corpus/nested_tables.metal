// Constant records with lists, colours and packed vectors, given by order and by name.
// @expects 6 11 4 2.5 1
#include <metal_stdlib>
using namespace metal;

struct Stop { float at; half4 colour; };
struct Ramp { uchar count; Stop stops[3]; };
struct Theme { Ramp ramps[2]; packed_uchar3 key; };
constant Theme themes[2] = {
    {{{2, {{0, half4(0)}, {1, half4(1)}}}, {3, {{0, half4(1, 0, 0, 1)}, {0.5, half4(5)}, {1, half4(2)}}}}, packed_uchar3(1, 2, 3)},
    {.ramps = {{.count = 1, .stops = {{.at = 2.5, .colour = half4(4)}}}, {}}, .key = {4, 5, 6}},
};
static half4 sampled(constant Ramp& r, float x) {
    for (uchar i = 1; i < r.count; i++)
        if (x < r.stops[i].at) return mix(r.stops[i - 1].colour, r.stops[i].colour, half((x - r.stops[i - 1].at) / (r.stops[i].at - r.stops[i - 1].at)));
    return r.stops[max(r.count, uchar(1)) - 1].colour;
}
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device uint* scratch [[buffer(2)]]) {
    uint one = uint(in[1]);
    out[0] = themes[one].key.z;
    out[1] = themes[one].key.x + themes[one].key[1] + themes[1 - one].key[1];
    out[2] = sampled(themes[one].ramps[0], 0.5).y;
    out[3] = themes[one].ramps[one - 1].stops[0].at;
    out[4] = all(sampled(themes[0].ramps[one], 0.25) == half4(3, 2.5, 2.5, 3));
}
