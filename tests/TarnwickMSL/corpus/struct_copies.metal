// Records go by value: a callee changes its copy alone, an array inside is copied too.
// @expects 1 2 | 8 2 | 5 3 | 3
#include <metal_stdlib>
using namespace metal;

struct Inner { float values[3]; };
struct Outer { Inner inner; float2 at; int count; };
Outer changed(Outer outer) {
    outer.inner.values[0] = 8.0;
    outer.at.y = 3.0;
    return outer;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Outer a = {{{in[1], in[2], in[3]}}, float2(in[5], in[6]), 3};
    Outer b = changed(a);
    out[0] = a.inner.values[0]; out[1] = a.inner.values[1];
    out[2] = b.inner.values[0]; out[3] = b.inner.values[1];
    out[4] = b.at.x; out[5] = b.at.y;
    b = a;
    b.inner.values[2] = 0.0;
    out[6] = a.inner.values[2];
}
