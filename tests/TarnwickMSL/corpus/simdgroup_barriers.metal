// A barrier of SIMD-groups where threads have parted, and fences.
// @runs check 64 64
// @expects 64*1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device uint* scratch [[buffer(2)]], uint i [[thread_index_in_threadgroup]],
    uint lane [[thread_index_in_simdgroup]], uint size [[threads_per_simdgroup]]) {
    threadgroup float values[64];
    values[i] = float(i);
    if (i / size % 2 == 0) { // a whole SIMD-group takes the same way
        simdgroup_barrier(mem_flags::mem_threadgroup);
        values[i] = values[i / size * size + (lane + 1) % size] + 0.0;
        simdgroup_barrier(mem_flags::mem_threadgroup | mem_flags::mem_device);
    }
    scratch[i] = i;
    atomic_thread_fence(mem_flags::mem_device, memory_order_seq_cst, thread_scope_device);
    atomic_thread_fence(mem_flags::mem_threadgroup, memory_order_acq_rel, thread_scope_threadgroup);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    out[i] = values[i] < 64.0 ? 1.0 : 0.0;
}
