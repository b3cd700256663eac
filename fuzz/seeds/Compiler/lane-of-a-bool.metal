#include <metal_stdlib>
using namespace metal;
static constant float3 sum = float3(1, 2, 3) + float3(4);
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[7] = sum[bool(in[2])];
}
