// Tests for what floats can be, and select.
// @expects 1 0 | 1 0 | 1 | 1 0 | 5 2
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float inf = in[1] / in[0], nan = as_type<float>(0x7fc00000u + uint(in[0]));
    out[0] = isinf(inf) ? 1.0 : 0.0; out[1] = isinf(in[1]) ? 1.0 : 0.0;
    out[2] = isnan(nan) ? 1.0 : 0.0; out[3] = isnan(in[1]) ? 1.0 : 0.0;
    out[4] = isfinite(in[3]) ? 1.0 : 0.0;
    out[5] = signbit(-in[2]) ? 1.0 : 0.0; out[6] = signbit(in[2]) ? 1.0 : 0.0;
    out[7] = select(in[2], in[5], true); out[8] = select(in[2], in[5], in[0] > 1.0);
}
