// Functions and methods that are written once for each address space.
// @expects 3 7 | 9 4 | 6
#include <metal_stdlib>
using namespace metal;

struct Pair {
    float a, b;
    float sum() const device { return a + b; }
    float sum() const thread { return a + b; }
    float sum() const constant { return a + b; }
};
float total(const device float* p) { return p[0] + p[1]; }
float total(constant float* p) { return p[0] + p[1]; }
float total(thread const float* p) { return p[0] + p[1]; }
namespace other { float total(constant float* p) { return p[0] - p[1] + 5.0; } }
template <class T> void put(device T& to, T value) { to = value; }
template <class T> void put(thread T& to, T value) { to = value; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  device Pair* pairs [[buffer(2)]]) {
    float local[2] = {in[1], in[2]};
    out[0] = total(local);
    out[1] = total(in + 3);
    put(pairs[0].a, 4.0f); put(pairs[0].b, 5.0f);
    Pair here; put(here.a, 1.0f); here.b = in[3];
    out[2] = pairs[0].sum(); out[3] = here.sum();
    out[4] = other::total(in + 2) + total(out) / 5.0;
}
