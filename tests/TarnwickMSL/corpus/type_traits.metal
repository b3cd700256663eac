// The traits of <metal_type_traits>, as values and as types (6.1; C++17's names).
// @expects 1 0 | 1 0 | 1 0 | 1 1 0 | 1 0 | 1 | 1 1 | 4 | 1 0 | 1 1 0 | 1 2
#include <metal_stdlib>
using namespace metal;

struct Plain { float x; };
enum Colour { red };
template <typename T> enable_if_t<is_integral_v<T>, float> size(T) { return sizeof(T); }
template <typename T> enable_if_t<is_floating_point_v<T>, float> size(T) { return 0; }
constexpr float kind(thread float&) { return 1; }
constexpr float kind(float&&) { return 2; }
template <typename T> float passed(T&& given) { return kind(forward<T>(given)); }

kernel void check(device float* out [[buffer(0)]]) {
    out[0] = is_same<float, float>::value; out[1] = is_same_v<float, half>;
    out[2] = is_floating_point<half>::value; out[3] = is_floating_point_v<int>;
    out[4] = is_integral<ushort>::value; out[5] = is_integral_v<float>;
    out[6] = is_signed_v<int>; out[7] = is_unsigned_v<uint>; out[8] = is_unsigned<int>::value;
    out[9] = is_enum<Colour>::value; out[10] = is_enum_v<Plain>;
    out[11] = is_same_v<remove_const_t<const float>, float>;
    out[12] = is_same_v<remove_reference_t<thread float&>, float>;
    out[13] = is_same_v<conditional_t<true, int, float>, int>;
    out[14] = size(3) + size(1.0f);
    out[15] = is_arithmetic_v<half>; out[16] = is_pointer_v<float>;
    out[17] = is_pointer_v<device float*>; out[18] = is_array_v<float[3]>; out[19] = is_const_v<float>;
    float here = is_same_v<decltype(declval<float>() + 1), float> ? 3 : 0;
    out[20] = passed(here); out[21] = here == 3 ? passed(1.0f) : 0;
}
