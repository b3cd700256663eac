// Atomic floats in device and threadgroup memory.
// @runs check 64 64
// @runs tell
// @expects 32 -16 | 2 2.5 | 2016
#include <metal_stdlib>
using namespace metal;

struct Sums { float before; atomic_float up, down; atomic<float> once; float group; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Sums& s [[buffer(2)]], uint i [[thread_index_in_threadgroup]]) {
    auto relaxed = memory_order_relaxed;
    threadgroup atomic_float shared;
    if (i == 0) { atomic_store_explicit(&shared, 0.0f, relaxed); atomic_store_explicit(&s.once, 2.0f, relaxed); }
    threadgroup_barrier(mem_flags::mem_threadgroup);
    atomic_fetch_add_explicit(&s.up, 0.5f, relaxed);
    atomic_fetch_sub_explicit(&s.down, 0.25f, relaxed);
    atomic_fetch_add_explicit(&shared, float(i), relaxed);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    if (i == 3) s.group = atomic_load_explicit(&shared, relaxed);
}
kernel void tell(device float* out [[buffer(0)]], device Sums& s [[buffer(2)]]) {
    auto relaxed = memory_order_relaxed;
    out[0] = atomic_load_explicit(&s.up, relaxed);
    out[1] = atomic_load_explicit(&s.down, relaxed);
    float seen = 2.0;
    atomic_compare_exchange_weak_explicit(&s.once, &seen, 3.5f, relaxed, relaxed);
    out[2] = seen;
    out[3] = atomic_exchange_explicit(&s.once, 1.0f, relaxed) - 1.0;
    out[4] = s.group;
}
