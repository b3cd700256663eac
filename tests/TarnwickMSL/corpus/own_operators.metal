// A program's own operators of matrices, and its own function assert, are better matches than the
// library's; assert of the library does nothing (3.2).
// @expects 1 0 | 0 1 | 10 20 | -1 | 3 7 | 5 | 11 8
#include <metal_stdlib>
using namespace metal;

static bool operator==(const float2x2 a, const float2x2 b) {
    return all(abs(a[0] - b[0]) < 0.5) && all(abs(a[1] - b[1]) < 0.5);
}
static bool operator!=(const float2x2 a, const float2x2 b) { return !(a == b); }
static half2x2 operator+(const half2x2 a, const half2x2 b) {
    return half2x2(a[0] * 10.0h + b[0] * 0.0h, a[1] * 10.0h);
}
static float3x3 operator-(thread const float3x3& a, thread const float3x3& b) {
    return float3x3(-a[0], b[1], b[2]);
}
static thread float3x2& operator*=(thread float3x2& a, thread const float3x3& b) {
    return a = a * b + a;
}
static void assert(int x, thread int& count) { count += x; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float2x2 a = float2x2(in[1], in[2], in[3], in[4]), near = a + float2x2(0.25, 0, 0, 0.25);
    out[0] = a == near; out[1] = a != near;
    float2x3 c = float2x3(float3(in[1]), float3(in[2]));
    float2x3 d = c + float2x3(float3(0.25), float3(0));
    out[2] = c == d; out[3] = c != d;
    half2x2 h = half2x2(a) + half2x2(a);
    out[4] = h[0].x; out[5] = h[0].y;
    out[6] = (float3x3(in[1]) - float3x3(in[1]))[0].x;
    a -= float2x2(-2, 0, 0, -3);
    out[7] = a[0].x; out[8] = a[1].y;
    assert(in[1] < 2);
    int count = 0;
    assert(5, count);
    out[9] = count;
    float3x2 e = float3x2(in[1], in[2], in[3], in[4], in[5], in[6]);
    e *= float3x3(10);
    out[10] = e[0].x;
    float2x4 g = float2x4(float4(in[1]), float4(in[2]));
    g *= float2x2(2, 3, 4, 5);
    out[11] = g[0].w;
}
