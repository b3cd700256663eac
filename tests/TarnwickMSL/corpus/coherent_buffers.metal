// Pointers to memory whose stores other threads see at once: before and after the address space, in
// arguments, locals and functions; the word is a name elsewhere (Metal Shading Language 3.2).
// @runs check 64 8
// @expects 64 2080
#include <metal_stdlib>
using namespace metal;

static void put(coherent(device) device uint* to, uint n, uint value) { to[n] = value; }

kernel void check(device coherent(device) float* out [[buffer(0)]], coherent device uint* scratch [[buffer(2)]],
                  uint i [[thread_position_in_grid]]) {
    device coherent(device) uint* numbers = scratch + 1;
    coherent(device) device atomic_uint* count = (device atomic_uint*)scratch;
    put(numbers, i, i + 1);
    atomic_thread_fence(mem_flags::mem_device, memory_order_seq_cst, thread_scope_device);
    if (atomic_fetch_add_explicit(count, 1, memory_order_relaxed) != 63) return;
    atomic_thread_fence(mem_flags::mem_device, memory_order_seq_cst, thread_scope_device);
    uint coherent = 0;
    for (uint n = 0; n < 64; n++) coherent += numbers[n];
    out[0] = 64;
    out[1] = coherent;
}
