// Calls as people write them: mixed literals, scalars beside vectors, all namespaces.
#include <metal_stdlib>
using namespace metal;

float hash(float2 p) { return fract(sin(dot(p, float2(127.1, 311.7))) * 43758.5453123); }
float noise(float2 p) {
    float2 i = floor(p), f = fract(p);
    f = f * f * (3.0 - 2.0 * f);
    return mix(mix(hash(i), hash(i + float2(1, 0)), f.x), mix(hash(i + float2(0, 1)), hash(i + 1.0), f.x), f.y);
}
float3 palette(float t, float3 a, float3 b, float3 c, float3 d) { return a + b * cos(6.28318 * (c * t + d)); }
#define rot(a) float2x2(cos(a), -sin(a), sin(a), cos(a))
#define PI 3.14159265
float sdBox(float3 p, float3 b) {
    float3 q = abs(p) - b;
    return length(max(q, 0.0)) + min(max(q.x, max(q.y, q.z)), 0.0);
}
float map(float3 p, float t) {
    p.xz = rot(t) * p.xz;
    p.xy *= rot(0.5 * t);
    return min(sdBox(p, float3(0.5)), length(p - float3(0, sin(t), 0)) - 0.25);
}
fragment float4 f(float4 p [[position]], constant float& time [[buffer(0)]]) {
    float2 uv = (2.0 * p.xy - 100.0) / 100, r = fmod(uv, 2), w = pow(abs(uv), 2.2) + powr(abs(uv.yx), float2(2));
    float d = clamp(uv.x, 0.0, 1.0) + smoothstep(0.0, 1.0, uv.y) + step(0.5, r.x) + saturate(w.x) + max(uv.x, 0.0);
    d += min(1.0, uv.y) + mix(0.0, 1.0, uv.x) + atan2(uv.y, uv.x) / PI + sign(uv.x) + exp(-3 * d) + rsqrt(4.0);
    d += max3(uv.x, uv.y, 1.0) + float(clz(3u)) + float(popcount(7)) + fast::sin(d) + precise::cos(d) + metal::tan(d);
    float3 ray = normalize(float3(uv, 1.5)), at = float3(0, 0, -3);
    float t = 0;
    for (int i = 0; i < 64; i++) {
        float h = map(at + t * ray, time);
        if (h < 0.001 || t > 20.0) break;
        t += h;
    }
    float3 n = normalize(float3(map(at + float3(0.01, 0, 0), time), 0.1, fwidth(d)));
    float3 colour = palette(t * 0.1, float3(0.5), 0.5, float3(1.0), float3(0, 0.33, 0.67));
    colour = mix(colour, reflect(ray, n), float3(0.1, 0.2, 0.3)) + refract(ray, n, 0.9) + noise(uv * 4);
    colour += max(dot(n, normalize(float3(1))), 0.) * distance(uv, float2(0)) + faceforward(n, ray, n);
    float whole, part = modf(d, whole);
    int e;
    part += frexp(d, e) + ldexp(part, e) + sincos(d, whole);
    half3 hc = half3(colour);
    hc = clamp(hc, 0.0h, 1.0h) * half(0.5) + max(hc, 0.0h) + hc * 2;
    uint bits = (uint(p.x) * 1664525u + 1013904223u) >> 8;
    bits = rotate(bits, 3u) ^ reverse_bits(bits) | extract_bits(bits, 2, 4);
    colour += float(bits & 0xff) / 255.0 + float(mulhi(bits, 12345u)) + float(abs(-3)) + length(uv);
    return float4(sqrt(max(colour, 0)) + float3(hc) + part, 1.0);
}
