// Macros with arguments, stringless pasting, conditions, and lines that go on.
// @expects 12 | 5 | 7 | 310
#include <metal_stdlib>
using namespace metal;

#define SQUARE(x) ((x) * (x))
#define JOIN(a, b) a##b
#define SUM(first, ...) (first + plus(__VA_ARGS__))
#if __METAL_VERSION__ >= 200 && defined(SQUARE)
constant float answer = 5.0;
#else
constant float answer = 6.0;
#endif
float plus(float a, float b) { return a \
    + b; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float JOIN(va, lue) = in[2];
    out[0] = SQUARE(value + 1.0) + in[3];
    out[1] = answer;
    out[2] = SUM(in[1], in[2], in[4]);
    out[3] = float(__METAL_VERSION__);
}
