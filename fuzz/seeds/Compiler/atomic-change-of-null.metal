// @target isOptimised
#include <metal_stdlib>
using namespace metal;
kernel void check(device float* out [[buffer(0)]]) {
    auto relaxed = memory_order_relaxed;
    if (1) {
        atomic_store_explicit(0, 1, relaxed);
    }
}
