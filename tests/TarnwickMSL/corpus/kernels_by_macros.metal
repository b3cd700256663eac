// Instances of kernel templates that macros name with several string literals; vectors through
// dependent names of types; products of bfloat and vectors of floats (2.1, 5.1.10).
// @runs sums_bfloat_2_x
// @expects 6 | 3 3 | 1.5 2 | 7 | 4 5
#include <metal_stdlib>
using namespace metal;

template <typename T> struct Four { using type = float4; };
template <> struct Four<half> { using type = half4; };
template <> struct Four<bfloat> { using type = float4; };
template <typename T> using Four_t = typename Four<T>::type;

template <typename T, int N>
kernel void sums(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    using Vector = typename Four<T>::type;
    float4 given(in[1], in[2], in[3], 0);
    T factor = T(in[N]);
    Vector sum = Vector(given) + Vector(0);
    out[0] = dot(float4(sum), float4(1));
    sum = Four_t<T>(in[3]) * Vector(given.xx, 1, Vector(2).x);
    out[1] = sum.x; out[2] = sum.z;
    float4 scaled = factor * (given * 0.5) + 0.5;
    scaled = scaled - factor * 0.0f;
    out[3] = scaled.x; out[4] = (given / factor + T(0.5)).z;
    out[5] = (factor + given)[2] + (given - factor).y + factor;
    out[6] = (factor + float2(2, 3)).x; out[7] = (float3(7) - factor).z;
}

#define INSTANCE(T, N, SUFFIX)                                                                     \
    template [[host_name("sums_" #T "_" #N SUFFIX)]] kernel void sums<T, N>(                       \
        device float* out [[buffer(0)]], constant float* in [[buffer(1)]])
INSTANCE(bfloat, 2, "_x");
INSTANCE(half, 1, "");
