// Matrices in device memory: columns, single components, products.
// @expects 48 16 | 5 | 6 9 | 2.5
#include <metal_stdlib>
using namespace metal;

struct Frame { float3x3 turn; half2x4 small; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Frame* f [[buffer(2)]]) {
    out[0] = float(sizeof(float3x3)); out[1] = float(sizeof(half2x4));
    f[1].turn = float3x3(in[2]);
    f[1].turn[1] = float3(in[1], 3.0, 5.0);
    f[1].turn[2][0] = 1.0;
    out[2] = f[1].turn[int(in[1])][2];
    float3 v = f[1].turn * float3(1.0, 1.0, 1.0);
    out[3] = v.x + v.y - 1.0; out[4] = v.z + 2.0;
    f[1].small = half2x4(half4(1.0h), half4(2.5h));
    out[5] = float(f[1].small[1].w);
}
