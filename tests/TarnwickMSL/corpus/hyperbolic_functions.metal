// Hyperbolic functions and their inverses, of floats, vectors and halves (6.5).
// @expects 1.1752012 1.5430806 0.76159416 | 0.88137359 1.3169579 0.54930614 | 0 1 0 | 1.1752012
// @within 1e-3
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = sinh(in[1]); out[1] = cosh(in[1]); out[2] = tanh(in[1]);
    out[3] = asinh(in[1]); out[4] = acosh(in[2]); out[5] = atanh(0.5 * in[1]);
    float3 zero = float3(in[0]);
    out[6] = sinh(zero).x; out[7] = cosh(zero).y; out[8] = tanh(zero).z;
    out[9] = sinh(half2(in[1])).x;
}
