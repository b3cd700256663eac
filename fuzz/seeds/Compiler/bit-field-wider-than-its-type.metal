#include <metal_stdlib>
using namespace metal;
struct Fields { uint low : 4096; };
kernel void check(device float* out [[buffer(0)]], device Fields* f [[buffer(2)]]) {
    out[0] = f[1].low;
}
