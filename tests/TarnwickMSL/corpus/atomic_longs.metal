// The least and the greatest of 64-bit integers.
// @runs check 64 32
// @runs tell
// @expects 63 5 | 1
// @refused The function atomic_fetch_max of 64 bits needs 64-bit integers, which the device lacks.
#include <metal_stdlib>
using namespace metal;

struct Ends { atomic_ulong most, least; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Ends& e [[buffer(2)]], uint i [[thread_position_in_grid]]) {
    atomic_max_explicit(&e.most, (5ul << 32) + i, memory_order_relaxed);
    atomic_min_explicit(&e.least, 1ul + i, memory_order_relaxed);
}
kernel void tell(device float* out [[buffer(0)]], device ulong* e [[buffer(2)]]) {
    out[0] = float(uint(e[0])); out[1] = float(uint(e[0] >> 32)); out[2] = e[1] == 0 ? 1.0 : 0.0;
}
