// Arguments of class templates that the compiler deduces, guides for it, folds (C++17).
// @expects 1.5 2 3 5 | 6 0 0 1 | 4 6 | 3 2 1 | 24 | 2
#include <metal_stdlib>
using namespace metal;

template <class T> struct Box {
    T value;
    Box(T v) : value(v) {}
};
template <class A, class B> struct Two {
    A a;
    B b;
};
template <class A, class B> Two(A, B) -> Two<A, B>;
template <class T, int N> struct List {
    T all[N];
    T last() const { return all[N - 1]; }
};
template <class T, class... R> List(T, R...) -> List<T, sizeof...(R) + 1>;

template <class... T> float sum(T... t) { return (0.0f + ... + t); }
template <class... T> bool every(T... t) { return (t && ...); }
template <class... T> float3 added(T... t) { return (float3(0) + ... + float3(t)); }
template <class... T> void put(device float* to, T... t) {
    int n = 0;
    ((to[n++] = t), ...);
}
template <class T, int N> constexpr int length(const thread T (&)[N]) { return N; }
template <int... N> constexpr int product = (N * ... * 1);

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Box b(in[1] + 0.5f);
    Box c{float2(in[1], in[2])};
    Two t{in[3], float3(5)};
    out[0] = b.value; out[1] = c.value.y; out[2] = t.a; out[3] = t.b.z;
    List l{in[1], in[2], in[6]};
    out[4] = l.last(); out[5] = sum(); out[6] = every(in[1] > 0, in[0] > 0); out[7] = every();
    float3 s = added(in[1], float3(1, 2, 3), 2);
    out[8] = s.x; out[9] = s.z;
    put(out + 10, in[3], 2, 1.0h);
    out[13] = product<1, 2, 3, 4>;
    array pair{in[1], in[2]};
    out[14] = pair.size() + length(l.all) - 3;
}
