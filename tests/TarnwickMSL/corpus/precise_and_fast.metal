// The namespaces fast and precise, qualified and with using declarations (6.1, 6.5).
// @expects 0.84147098 0.84147098 0.84147098 | 8 8 | 1.4142136 | 0 | 2
// @within 1e-4
#include <metal_stdlib>
using namespace metal;

float both(float x) {
    using precise::exp2;
    return exp2(x);
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = fast::sin(in[1]); out[1] = precise::sin(in[1]); out[2] = metal::precise::sin(in[1]);
    out[3] = both(in[3]); out[4] = metal::fast::exp2(in[3]);
    out[5] = precise::sqrt(float2(in[2])).y;
    out[6] = fast::clamp(-in[1], 0.0f, 1.0f);
    out[7] = precise::max(in[1], in[2]);
}
