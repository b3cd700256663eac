// What one thread stores, every other reads after the barrier, though it stored something else itself.
// @runs check 16 16
// @expects 16*4261 | 16*2 | 16*1120
// @runs sum 16 16
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], device float* scratch [[buffer(2)]],
                  uint t [[thread_index_in_threadgroup]]) {
    threadgroup int one;
    threadgroup float pair[2];
    threadgroup bool flag;
    threadgroup float3 three;
    one = 1; pair[0] = 5; flag = false; three = float3(1); scratch[0] = 1;
    threadgroup_barrier(mem_flags::mem_threadgroup | mem_flags::mem_device);
    if (t == 7) { one = 2; pair[0] = 6; flag = true; three.y = 4; scratch[0] = 2; }
    threadgroup_barrier(mem_flags::mem_threadgroup | mem_flags::mem_device);
    out[t] = float(one * 100) + pair[0] * 10 + (flag ? 1 : 0) + three.y * 1000;
    out[16 + t] = scratch[0];
}
kernel void sum(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                uint t [[thread_index_in_threadgroup]]) {
    threadgroup float total;
    if (t == 0) total = 0;
    threadgroup_barrier(mem_flags::mem_threadgroup);
    for (uint k = 0; k < 16; k++) {
        if (t == k) total = total + in[k];
        threadgroup_barrier(mem_flags::mem_threadgroup);
    }
    float before = total;
    threadgroup_barrier(mem_flags::mem_threadgroup);
    if (t == 5) total = 1000;
    threadgroup_barrier(mem_flags::mem_threadgroup);
    out[32 + t] = before + total;
}
