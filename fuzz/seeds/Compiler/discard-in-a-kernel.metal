#include <metal_stdlib>
using namespace metal;
kernel void check(device float* out [[buffer(0)]]) {
    out[0] = 1;
    discard_fragment();
}
