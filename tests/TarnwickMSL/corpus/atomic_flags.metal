// Atomic booleans, and compare-exchange loops.
// @runs check 32 32
// @expects 1 | 31 32
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], uint i [[thread_index_in_threadgroup]]) {
    auto relaxed = memory_order_relaxed;
    threadgroup atomic_bool taken;
    threadgroup atomic_uint winners, product, rounds;
    if (i == 0) {
        atomic_store_explicit(&taken, false, relaxed);
        atomic_store_explicit(&winners, 0u, relaxed);
        atomic_store_explicit(&product, 0u, relaxed);
    }
    threadgroup_barrier(mem_flags::mem_threadgroup);
    if (!atomic_exchange_explicit(&taken, true, relaxed)) atomic_fetch_add_explicit(&winners, 1, relaxed);
    uint seen = atomic_load_explicit(&product, relaxed);
    while (!atomic_compare_exchange_weak_explicit(&product, &seen, max(seen, i), relaxed, relaxed)) {}
    bool wanted = true;
    bool isSame = atomic_compare_exchange_weak_explicit(&taken, &wanted, true, relaxed, relaxed);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    if (i != 5) return;
    out[0] = float(atomic_load_explicit(&winners, relaxed));
    out[1] = float(atomic_load_explicit(&product, relaxed));
    out[2] = isSame && atomic_load_explicit(&taken, relaxed) ? 32.0 : 0.0;
}
