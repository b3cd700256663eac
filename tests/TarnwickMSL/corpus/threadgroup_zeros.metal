// Threadgroup variables whose initial value is zero, and references to threadgroup memory (4.4).
// @expects 0 0 0 1 | 4 7 | 5 0 | 64
// @runs check 64 64
#include <metal_stdlib>
using namespace metal;

struct Counts {
    atomic_uint all;
    array<atomic_uint, 2> each;
};
struct Row { float4 value[2]; };

static uint sum(threadgroup const uint (&list)[3]) { return list[0] + list[1] + list[2]; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  uint i [[thread_index_in_threadgroup]]) {
    threadgroup uint zeros[3] = {}, one{};
    threadgroup Counts counts{{}, {}};
    threadgroup Row rows[2] = {};
    threadgroup Row (&row) = rows[1];
    threadgroup float4 (&values)[2] = rows[uint(in[1])].value;
    if (i == 0) {
        out[0] = sum(zeros); out[1] = one; out[2] = rows[0].value[1].w;
        out[3] = atomic_load_explicit(&counts.each[1], memory_order_relaxed) == 0;
        values[0] = float4(4);
        row.value[1].y = 7;
        out[4] = rows[1].value[0].z; out[5] = values[1].y;
        one = 5;
        out[6] = one; out[7] = zeros[uint(in[2])];
    }
    threadgroup_barrier(mem_flags::mem_threadgroup);
    atomic_fetch_add_explicit(&counts.all, 1, memory_order_relaxed);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    if (i == 0)
        out[8] = atomic_load_explicit(&counts.all, memory_order_relaxed);
}
