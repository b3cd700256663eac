// Barriers of every kind, in a loop that halves its threads.
// @runs check 96 32
// @expects 496 1520 2544
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device float* scratch [[buffer(2)]], uint i [[thread_position_in_grid]],
    uint t [[thread_index_in_threadgroup]], uint group [[threadgroup_position_in_grid]]) {
    threadgroup float sums[32];
    scratch[i] = float(i);
    threadgroup_barrier(mem_flags::mem_device);
    sums[t] = scratch[group * 32 + (t + 1) % 32];
    threadgroup_barrier(mem_flags::mem_threadgroup);
    for (uint step = 16; step > 0; step /= 2) {
        if (t < step) sums[t] += sums[t + step];
        threadgroup_barrier(mem_flags::mem_threadgroup | mem_flags::mem_device);
    }
    threadgroup_barrier(mem_flags::mem_none);
    threadgroup_barrier(mem_flags::mem_texture);
    if (t == 0) out[group] = sums[0];
}
