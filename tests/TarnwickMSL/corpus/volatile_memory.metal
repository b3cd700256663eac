// const and volatile pointers.
// @expects 4 4 | 7
#include <metal_stdlib>
using namespace metal;

float twice(const volatile device float* p) { return *p + *p; }
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device float* scratch [[buffer(2)]]) {
    volatile device float* v = scratch;
    *v = 2.0; v[1] = *v;
    out[0] = twice(v); out[1] = twice(v + 1);
    device float* const fixed = out;
    fixed[2] = in[7];
}
