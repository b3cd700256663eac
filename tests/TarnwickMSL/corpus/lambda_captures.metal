// Lambdas: by copy, by reference, with initialisers, generic, mutable, immediately called (C++17).
// @expects 3 | 1 | 12 | 2 4.5 | 6 | 5 | 11 22
#include <metal_stdlib>
using namespace metal;

template <typename F> void each(thread float (&all)[2], F f) {
    for (int i = 0; i < 2; i++) all[i] = f(all[i], i);
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float x = in[1];
    auto byReference = [&](float y) { x += y; };
    auto byCopy = [x] { return x; };
    byReference(2);
    out[0] = x; out[1] = byCopy();
    auto counter = [n = int(in[10])]() mutable { return ++n; };
    counter();
    out[2] = counter();
    auto twice = [](auto v) { return v + v; };
    out[3] = twice(1); out[4] = twice(float2(2.25)).x;
    out[5] = [=](float y) -> float { return x * y; }(2);
    auto compose = [](auto f, auto g) { return [=](float v) { return f(g(v)); }; };
    out[6] = compose([](float v) { return v + 1; }, [](float v) { return v * v; })(in[2]);
    float all[2] = {1, 2};
    each(all, [&](float v, int i) { return 10 * v + v; });
    out[7] = all[0]; out[8] = all[1];
}
