// Constructors of vectors in every place of a program: initialisers, members, templates, aliases, lambdas, casts (2.2.2).
// @expects 4 5 4 3 | 3 4 6 3 | 1 0 3 4 | 0.01 4 0 0 | 1 6 40 1 | 3 1 4 4 | 6
// @within 1e-3
#include <metal_stdlib>
using namespace metal;

namespace n0 { float4 f(float3 v) { return float4(v, 1.0) + float4(v.xy, 1, 0) + float4(0); } }
namespace n1 { float3 f(float2 v) { float3 q(v, 1), r{v, 2.0}; float3 s = {1, v}; return q + r + s; } }
namespace n2 { constant float3 table[2] = {float3(1, 2, 3), {4, 5, 6}}; float f(int i) { return table[i].x; } }
namespace n3 { template <typename T> T f(float x) { return T(x) + T(1); } float2 g() { return f<float2>(2); } }
namespace n4 { struct S { float3 v; int n; S(float2 a) : v(a, 1), n(2) {} }; float f() { return S(3).v.x; } }
namespace n5 { using colour = float3; colour f(half h) { return colour(h, 1.0h, 2) + (colour)h; } }
namespace n6 { typedef vec<float, 3> v3; v3 f(int3 i) { return v3(i) + vec<float, 3>(i.x, 1, 2); } }
namespace n7 { float3 f(int3 i) { return static_cast<float3>(i) * (float3)i.zyx; } }
namespace n8 { auto f() { return [](float x) -> float3 { return float3(x, 1, 2); }(3); } }
namespace n9 { bool4 f(float4 a, float4 b) { return bool4(any(a < b), (a == b).xyz); } }
namespace n10 { metal::float4 f() { return metal::float4(1, 2, metal::float2(3)); } }
namespace n11 { float2 f(packed_float3 p) { p.zx = p.xy * 2; return float2(p.yz) + packed_float2(1, 2); } }
namespace n12 { template <class T> T f(T a) { return saturate(0.5 + a) * 1e-2; } half g() { return f(1.h); } }
namespace n13 { struct S { float2 v = float2(1, 2); float2 w{3, 4}; }; float f() { S s; return s.w.y; } }
namespace n14 { template <class T> bool f(T i) { return i < T(0) && T(1) < i; } bool g() { return f(1.0); } }
namespace n15 {
using C = float3;
bool f(C a, short3 b) { return any(a < C(0)) || any(b < short3(1)) || any(a < vec<float, 3>(2)); }
}
namespace n16 { template <class T, class U = vec<T, 2>> U f(T a) { return U(a, T(1)); } float2 g() { return f(1.0); } }
namespace n17 {
float f(int4 v) {
    return static_cast<metal::float4>(v).x + static_cast<vec<float, 4>>(v).y + static_cast<const float4>(v).z;
}
}
namespace n18 {
template <class T> T f(T a) { return a; }
struct S { float v; };
float g() { using T = S; T v = T{40.0}; return v.v; }
float T(float2 p) { return p.x; }
float h() { return T(float2(1)); }
}
namespace n19 {
auto f() { return [](float x) -> metal::float3 { return metal::float3(x); }(3); }
struct S { operator metal::float3() const { return 1; } };
}
namespace n20 {
struct S { S(float2 a) : v(a, 1), w{1, 2} {} float3 v; float w[2]; };
struct R { float2 w; operator short2() const { return 1; } };
short2 f() { return short2(R{S(1).v.xy}); }
}
namespace n21 { using C = float3; float f(float C) { return (C) - 1; } C g() { return (C)1 + C(1, 2, 3); } }
namespace n22 { struct S { uint v; ~S() {} }; uint f(uint x) { return (~uint2(x, 5) & 7).x; } }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    const float3 v(in[1], in[2], in[3]);
    const int3 i(v);
    out[0] = n0::f(v).y; out[1] = n1::f(v.xy).y; out[2] = n2::f(i.x); out[3] = n3::g().y;
    out[4] = n4::f(); out[5] = n5::f(half(v.z)).y; out[6] = n6::f(i + 1).z; out[7] = n7::f(i).x;
    out[8] = n8::f().y; out[9] = n9::f(float4(v, 4), float4(1, 3, 3, 5)).z; out[10] = n10::f().w;
    out[11] = n11::f(v).y; out[12] = n12::g(); out[13] = n13::f(); out[14] = n14::g();
    out[15] = n15::f(v + 4, short3(2)); out[16] = n16::g().y; out[17] = n17::f(int4(i, 4));
    out[18] = n18::g(); out[19] = n18::h(); out[20] = n19::f().x; out[21] = n20::f().x;
    out[22] = n21::g().z; out[23] = n21::f(5);
    out[24] = n22::f(uint(i.x));
}
