// if constexpr, on types and on numbers, and the traits that it asks (C++17).
// @expects 1 2 3 | 10 20 | 6 | 2
#include <metal_stdlib>
using namespace metal;

template <typename T> int kind(T) {
    if constexpr (is_same_v<T, bool>) return 3;
    else if constexpr (is_floating_point_v<T>) return 1;
    else if constexpr (is_integral_v<T>) return 2;
    else return 0;
}
template <typename T> float total(T v) {
    if constexpr (is_same_v<T, float3>) return v.x + v.y + v.z;
    else return v;
}
template <int N> float scaled(float x) {
    float y = x;
    if constexpr (N > 1) y *= 10 * N;
    else y *= 10;
    return y;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = kind(in[0]); out[1] = kind(3u); out[2] = kind(true);
    out[3] = scaled<1>(in[1]); out[4] = scaled<2>(in[1]);
    out[5] = total(float3(in[1], in[2], in[3])); out[6] = total(in[2]);
}
