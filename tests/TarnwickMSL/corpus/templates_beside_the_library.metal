// Templates of the program with the names of library functions; traits of vectors (1.5.2, 6.1).
// @expects -1 1 | -1 0 1 1 | 3.5 | 7 | 1 0 1 0
#include <metal_stdlib>
using namespace metal;

template <typename T, typename = enable_if_t<is_integral<T>::value>> T sign(T x) {
    return select(select(x, T(0), x == T(0)), T(1), x > T(0)) - select(T(0), x + T(1), x < T(0));
}
template <typename T> T fract(T x) { return x + T(3); }
template <typename T> T max(T a, float b) { return a + T(b); }

kernel void check(device float* out [[buffer(0)]]) {
    out[0] = sign(-1); out[1] = sign(9u);
    int4 signs = sign(int4(-1, 0, 1, 7));
    out[2] = signs.x; out[3] = signs.y; out[4] = signs.z; out[5] = signs.w;
    out[6] = metal::fract(3.5f) + 3;
    out[7] = fract(4);
    out[8] = is_integral<int4>::value; out[9] = is_integral_v<float2>;
    out[10] = is_floating_point_v<half3>; out[11] = is_floating_point<uint2>::value;
}
