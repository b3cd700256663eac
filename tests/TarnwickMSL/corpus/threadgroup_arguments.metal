// Threadgroup memory as arguments: pointers, records, references, functions that take them.
// @runs check 16 16
// @expects 15 14 | 16 | 30
#include <metal_stdlib>
using namespace metal;

struct Slot { float v[3]; half weight; };
void fill(threadgroup float* to, uint n, float value) { to[n] = value; }
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], threadgroup float* line [[threadgroup(0)]], threadgroup Slot* slots [[threadgroup(1)]],
    threadgroup atomic_uint& count [[threadgroup(2)]], uint i [[thread_index_in_threadgroup]]) {
    fill(line, i, in[i]);
    slots[i].v[2] = in[i]; slots[i].weight = half(2.0);
    if (i == 0) atomic_store_explicit(&count, 0, memory_order_relaxed);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    atomic_fetch_add_explicit(&count, 1, memory_order_relaxed);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    if (i != 0) return;
    out[0] = line[15]; out[1] = line[14];
    out[2] = float(atomic_load_explicit(&count, memory_order_relaxed));
    Slot last = slots[15];
    out[3] = last.v[2] * float(last.weight);
}
