// Integer hashes, value noise and its sum over octaves, as shaders write them; the hashes' values by
// their definition, the noise by what it must be at lattice points and between (6.3, 6.5).
// @expects 1364076727 | 663891101 | 1 1 | 1 | 1
#include <metal_stdlib>
using namespace metal;

uint fmix(uint h) {
    h ^= h >> 16;
    h *= 0x85ebca6bu;
    h ^= h >> 13;
    h *= 0xc2b2ae35u;
    return h ^ h >> 16;
}
uint wang(uint seed) {
    seed = (seed ^ 61u) ^ (seed >> 16);
    seed *= 9u;
    seed = seed ^ (seed >> 4);
    seed *= 0x27d4eb2du;
    return seed ^ (seed >> 15);
}
float unit(uint h) { return as_type<float>((h >> 9) | 0x3f800000u) - 1.0; }
float lattice(int2 p) { return unit(fmix(as_type<uint>(p.x) * 1664525u + as_type<uint>(p.y))); }
float noise(float2 p) {
    int2 i = int2(floor(p));
    float2 f = fract(p), s = f * f * (3.0 - 2.0 * f);
    float low = mix(lattice(i), lattice(i + int2(1, 0)), s.x);
    float high = mix(lattice(i + int2(0, 1)), lattice(i + 1), s.x);
    return mix(low, high, s.y);
}
float octaves(float2 p) {
    float sum = 0, scale = 0.5;
    const float2x2 turn = float2x2(0.8, 0.6, -0.6, 0.8);
    for (int i = 0; i < 5; i++, scale *= 0.5) {
        sum += scale * noise(p);
        p = turn * p * 2.02;
    }
    return sum;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = float(fmix(uint(in[1])));
    out[1] = float(wang(uint(in[1])));
    out[2] = abs(noise(float2(in[3], -in[4])) - lattice(int2(3, -4))) < 1e-6;
    float middle = (lattice(int2(1, 2)) + lattice(int2(2, 2))) / 2;
    out[3] = abs(noise(float2(in[1] + 0.5, in[2])) - middle) < 1e-6;
    bool inside = true;
    for (int i = 0; i < 20; i++) {
        float v = octaves(float2(in[i], in[20 - i]) * 0.37);
        inside = inside && v >= 0 && v < 1;
    }
    out[4] = inside;
    out[5] = unit(0xFFFFFFFFu) < 1 && unit(uint(in[0])) == 0;
}
