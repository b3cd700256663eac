// Names for the members of records, arrays and results (C++17).
// @expects 1 2 | 3 4 5 | 7 | 10 20
#include <metal_stdlib>
using namespace metal;

struct Range { float low, high; };
Range ordered(float a, float b) { return a < b ? Range{a, b} : Range{b, a}; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    auto [low, high] = ordered(in[2], in[1]);
    out[0] = low; out[1] = high;
    float three[3] = {in[3], in[4], in[5]};
    const auto& [a, b, c] = three;
    out[2] = a; out[3] = b; out[4] = c;
    Range r = {3, 4};
    auto& [x, y] = r;
    x += 1; y -= 1;
    out[5] = r.low + r.high;
    Range all[2] = {{1, 10}, {2, 20}};
    int i = 6;
    for (auto [k, v] : all) out[i++] = v;
}
