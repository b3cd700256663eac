// Atomic changes through a pointer that each thread chooses, among two buffers and threadgroup memory.
// @runs check 32 32
// @runs tell
// @expects 16 8 | 112 | 3
#include <metal_stdlib>
using namespace metal;

kernel void check(device atomic_uint* more [[buffer(0)]], device atomic_uint* counts [[buffer(2)]],
                  uint i [[thread_index_in_threadgroup]]) {
    threadgroup atomic_uint shared;
    if (i == 0) { atomic_store_explicit(&shared, 0u, memory_order_relaxed);
                  atomic_store_explicit(more + 9, 0u, memory_order_relaxed); }
    threadgroup_barrier(mem_flags::mem_threadgroup | mem_flags::mem_device);
    device atomic_uint* at = i % 2 ? counts : more + 9;
    uint before = atomic_fetch_add_explicit(at, 1, memory_order_relaxed);
    if (i % 4 == 0) atomic_fetch_add_explicit(i % 8 == 4 ? &shared : counts + 1, i, memory_order_relaxed);
    threadgroup_barrier(mem_flags::mem_threadgroup | mem_flags::mem_device);
    if (before == 15 && i % 2) atomic_store_explicit(counts + 2, 3u, memory_order_relaxed);
    if (i == 3) atomic_fetch_add_explicit(counts + 1, atomic_load_explicit(&shared, memory_order_relaxed), memory_order_relaxed);
}
kernel void tell(device float* out [[buffer(0)]], device uint* counts [[buffer(2)]]) {
    uint other = ((device uint*)out)[9];
    out[0] = float(counts[0]); out[1] = float(other / 2); out[2] = float(counts[1]); out[3] = float(counts[2]);
}
