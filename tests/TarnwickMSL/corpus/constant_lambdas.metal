// Lambdas in constant expressions, generic and mutable ones, conditions at compile time with names (C++17).
// @expects 3 2 4 | 5 6 | 9 2 | 3 | 1 2 4
#include <metal_stdlib>
using namespace metal;

constexpr auto twice = [](auto x) { return x * 2; };
static_assert(twice(2) == 4, "");

template <class T> float first(T x) {
    if constexpr (constexpr int n = sizeof(T); n == 4)
        return x;
    else if constexpr (n == 8)
        return x.y;
    else
        return x[n / 8 + 1];
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    constexpr auto add = [](int a, int b) constexpr { return a + b; };
    constexpr int n = add(1, 2);
    float list[n] = {in[1], in[2], in[4]};
    out[0] = n; out[1] = list[n - 2]; out[2] = twice(in[2]);
    float kept = in[1];
    auto grow = [kept](float by) mutable { return kept += by; };
    out[3] = grow(4); out[4] = grow(1);
    auto all = [&](auto... a) { return (a + ...); };
    out[5] = all(in[3], 2.0f, 4); out[6] = [v = float3(1, 2, 3)](int i) { return v[i]; }(1);
    auto wide = [](float2 a) -> float3 { return float3(a, 3); };
    out[7] = wide(float2(1)).z;
    out[8] = first(in[1]); out[9] = first(float2(1, 2)); out[10] = first(float4(1, 2, 3, 4));
}
