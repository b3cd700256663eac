// 64-bit integers and their vectors in device memory.
// @expects 5 1 | -3 | 12 24
#include <metal_stdlib>
using namespace metal;

struct Wide { long a; ulong b; long3 c; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Wide* w [[buffer(2)]]) {
    w[1].b = 0x100000005ul;
    out[0] = float(uint(w[1].b)); out[1] = float(uint(w[1].b >> 32));
    w[1].a = -long(in[3]); out[2] = float(w[1].a);
    w[1].c = long3(4) * 3;
    out[3] = float(w[1].c.z); out[4] = float(((device uint*)&w[1].c)[2] * 2);
}
