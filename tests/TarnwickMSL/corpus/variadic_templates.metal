// Parameter packs: folds, recursion, counts, and packs passed on (1.5.2).
// @expects 10 | 24 | 3 | 1 0 | 9 | 6 | 1 2 3
#include <metal_stdlib>
using namespace metal;

template <typename... T> float sum(T... t) { return (0.0f + ... + t); }
template <typename... T> float product(T... t) { return (t * ... * 1); }
template <typename... T> constexpr int count(T...) { return sizeof...(T); }
template <typename... T> bool allOf(T... t) { return (t && ...); }
template <typename T> T largest(T a) { return a; }
template <typename T, typename... Rest> T largest(T a, Rest... rest) { return max(a, largest(rest...)); }
template <typename F, typename... T> auto called(F f, T... t) { return f(t...); }
template <int... n> struct Numbers { static constexpr constant int all[] = {n...}; };

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = sum(in[1], 2, 3u, 4.0h);
    out[1] = product(in[2], 3, 4);
    out[2] = count(1, 2.0, float3(1));
    out[3] = allOf(true, in[1] > 0); out[4] = allOf(true, in[0] > 0, true);
    out[5] = largest(in[4], in[9], in[2]);
    out[6] = called([](float a, float b, float c) { return a + b + c; }, in[1], in[2], in[3]);
    for (int i = 0; i < 3; i++) out[7 + i] = Numbers<1, 2, 3>::all[i];
}
