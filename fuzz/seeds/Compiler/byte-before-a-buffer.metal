// @target hasFloat16 hasInt8 hasInt16 hasInt64
#include <metal_stdlib>
using namespace metal;
kernel void check(device bool* out [[buffer(0)]]) {
    out[-1] = 1;
}
