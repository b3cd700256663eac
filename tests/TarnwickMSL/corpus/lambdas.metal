// Lambdas with captures by value and by reference, passed to a template.
// @expects 6 | 8 | 10 | 3
#include <metal_stdlib>
using namespace metal;

template <typename F> float summed(int n, F f) {
    float total = 0.0;
    for (int i = 0; i < n; i++) total += f(float(i));
    return total;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float scale = in[2];
    auto scaled = [=](float x) { return x * scale; };
    out[0] = scaled(in[3]);
    int calls = 0;
    out[1] = summed(4, [&](float x) { calls++; return x + 0.5; });
    scale = in[5];
    out[2] = scaled(in[5]);
    out[3] = float(calls - 1);
}
