// The compiler's own macros, pragmas, conditions on headers and versions, pasting, variadic macros (1.5.3).
// @expects 1 | 310 | 3 | 12 | 6 | 1 | 1 0 | 9 | 1
#pragma once
#include <metal_stdlib>
#pragma mark - Functions
using namespace metal;

#define JOINED(a, b) a##b
#define SUM(...) sum(__VA_ARGS__)
#define LIST(M) M(1) M(2) M(3)
#define ADDED(n) +n
#ifdef __METAL__
constant int isMetal = __METAL__;
#endif
#if __METAL_VERSION__ >= 200 && defined(__METAL_VERSION__)
constant int version = __METAL_VERSION__;
#else
#error "too old"
#endif
#if __has_include(<metal_math>) && !__has_include(<nowhere>)
constant int hasMath = 1;
#endif
#pragma clang __debug crash

float sum(float a, float b, float c) { return a + b + c; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = isMetal;
    out[1] = version;
    int JOINED(th, ree) = 3;
    out[2] = three;
    out[3] = SUM(3, 4, 5);
    out[4] = 0 LIST(ADDED);
    out[5] = hasMath;
    out[6] = __LINE__ > 10; out[7] = sizeof(__FILE__) == 0;
#pragma unroll
    for (int i = 0; i < 3; i++) out[8] = i == 0 ? 3 : out[8] + 3;
#pragma clang loop unroll(disable)
    for (int i = 0; i < int(in[1]); i++) out[8] += 0;
    out[9] = in[1];
}
