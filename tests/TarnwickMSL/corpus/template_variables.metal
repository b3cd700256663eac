// Variable templates with specialisations, inline variables, templates as arguments, auto arguments (C++17).
// @expects 3.140625 1 2 6 0 | 2 3 2 4 3 5 | 7 5 3 3 | 1 0 | 6
// @within 1e-3
#include <metal_stdlib>
using namespace metal;

template <class T> constexpr T circle = T(3.14159f);
template <class T> constexpr int kind = 0;
template <> constexpr int kind<float> = 1;
template <class T> constexpr int kind<thread T*> = 2;
template <class T, int N> constexpr int kind<vec<T, N>> = 3 + N;

inline constexpr float a = 2;
inline constant float b = 3;
constant inline float3 c = float3(1, 2, 3);
struct Values {
    static constexpr float d = 4;
    static inline constant float e = 3;
};
namespace outer {
inline namespace first {
inline constexpr int q = 5;
}
} // namespace outer
namespace x::y {
constexpr constant int deep = 7;
}

template <auto V> struct Constant {
    static constexpr auto value = V;
};
template <auto... V> constexpr int count = sizeof...(V);
template <template <class> class C, class T> struct Applied {
    typename C<T>::type value;
};
template <class T> struct Same {
    using type = T;
};
template <class T> struct Outer {
    template <class U> struct Inner {
        T t;
        U u;
        template <class W> W sum() const { return W(t) + W(u); }
    };
};
struct Point {
    float x;
};
template <class T, class = void> struct HasX : false_type {};
template <class T> struct HasX<T, void_t<decltype(T::x)>> : true_type {};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = circle<half>; out[1] = kind<float>; out[2] = kind<thread int*>; out[3] = kind<float3>; out[4] = kind<int>;
    out[5] = a; out[6] = b; out[7] = c.y; out[8] = Values::d; out[9] = Values::e; out[10] = outer::q;
    Applied<Same, float3> applied{float3(in[5])};
    Outer<float>::Inner<int> inner{in[1], 2};
    out[11] = x::y::deep; out[12] = applied.value.y; out[13] = inner.sum<float>(); out[14] = count<1, 2u, true>;
    out[15] = HasX<Point>::value; out[16] = HasX<Same<int>>::value;
    out[17] = Constant<6>::value;
}
