#include <metal_stdlib>
using namespace metal;
kernel void check(device float* out [[buffer(0)]]) {
    int list[8] = {};
    atomic_fetch_add_explicit((threadgroup atomic_int*)list + 5, 5, memory_order_relaxed);
    out[0] = list[5];
}
