// auto for variables, results and loops, decltype (C++17).
// @expects 2 | 3 | 4 6 | 1 0 | 5 | 12
#include <metal_stdlib>
using namespace metal;

auto doubled(float2 v) { return v * 2; }
template <typename A, typename B> auto sum(A a, B b) -> decltype(a + b) { return a + b; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    auto a = in[2];
    out[0] = a;
    const auto b = int(in[3]);
    out[1] = b;
    auto c = doubled(float2(2, in[3]));
    out[2] = c.x; out[3] = c.y;
    auto lessThan = c < float2(5);
    out[4] = lessThan.x; out[5] = lessThan.y;
    out[6] = sum(2, in[3]);
    decltype(c) d = c;
    auto* p = &d;
    auto& r = *p;
    r += 1;
    out[7] = d.x + d.y;
}
