// Vectors of types that decltype, traits and members of templates name (C++17; 2.2.2).
// @expects 1 5 9 3 | 2 3 2 | 2 2 4 | 7 8 | 3 2 1 | 9 | 4 | 3 5
#include <metal_stdlib>
using namespace metal;

template <class T> struct Of {
    typedef vec<T, 3> type;
    using four = vec<T, 4>;
};
template <class T> using Three = typename Of<T>::type;
template <class T> T sum() {
    using V = typename Of<float>::type;
    V v = V(1, 2, 3);
    typename Of<float>::type w(3, 2, 1);
    return T(v + w);
}
template <class T> struct Ray {
    using value = T;
    T origin, direction;
    value at(float t) const { return origin + direction * value(t); }
};
template <class R> typename R::value along(R r) { return r.at(2) + typename R::value(1, 2, 3); }
template <class V> auto reversed(V v) { return decltype(v)(v.z, v.y, v.x); }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float3 v = float3(in[1], in[2], in[3]);
    decltype(v) a(1, 2, 3), b = decltype(v)(4, 5, 6);
    using D = decltype(v);
    D c(7, 8, 9);
    decltype(v) d{1, 2, 3};
    out[0] = a.x; out[1] = b.y; out[2] = c.z; out[3] = d.z;
    using W = decltype(v * 2.0f);
    W e = W(1, 2, 3);
    Three<float> f(1, v.yz);
    Of<float>::type g(v.zy, 1);
    out[4] = e.y; out[5] = f.z; out[6] = g.y;
    auto h = Three<half>(1, 2, 3);
    remove_reference_t<decltype((v))> i(1, 2, 3);
    Of<int>::four j(1, 2, int2(4));
    out[7] = h.y; out[8] = i.y; out[9] = j.w;
    auto k = conditional_t<true, float2, float3>(7, 8);
    out[10] = k.x; out[11] = k.y;
    float3 l = reversed(v);
    out[12] = l.x; out[13] = l.y; out[14] = l.z;
    typedef decltype(v.x * float2(1)) Two;
    out[15] = Two(4, 5).x + Two(4, 5).y;
    out[16] = sum<float3>().x;
    const float3 m = along(Ray<float3>{float3(0), float3(1, 1, 1)});
    out[17] = m.x; out[18] = m.z;
}
