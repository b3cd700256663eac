// Powers, roots, logarithms, and taking numbers apart.
// @expects 8 3 | 3 | 0.5 | 0.625 3 | 40 | 1 2
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = exp2(in[3]); out[1] = log2(in[8]);
    out[2] = sqrt(in[9]);
    out[3] = rsqrt(in[4]);
    int exponent;
    out[4] = frexp(in[5], exponent); out[5] = float(exponent);
    out[6] = ldexp(in[5], 3);
    out[7] = pow(in[7], in[0]); out[8] = powr(in[4], 0.5);
}
