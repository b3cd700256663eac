// @target isOptimised
#include <metal_stdlib>
using namespace metal;
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = unpack_unorm4x8_srgb_to_float(128u * uint(in[1])).x;
}
