// Threadgroup arrays, vectors and single values declared in a kernel, and references to them.
// @runs check 64 64
// @expects 63 62 61 60 | 60*? | 5 8 12
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], uint i [[thread_index_in_threadgroup]]) {
    threadgroup float line[64];
    threadgroup float4 grid[4][4];
    threadgroup int one;
    line[i] = float(i);
    if (i < 16) grid[i / 4][i % 4] = float4(float(i) / 2.0);
    if (i == 9) one = 5;
    threadgroup_barrier(mem_flags::mem_threadgroup);
    threadgroup float* end = line + 63;
    if (i < 4) out[i] = *(end - i);
    threadgroup float4 (&row)[4] = grid[3];
    threadgroup float4 (&corner) = row[i % 4];
    threadgroup int (&same) = one;
    if (i == 41) out[66] = row[2].x + corner.y - 6.5 + float(same);
    if (i == 40) { out[64] = float(one); out[65] = grid[3][2].y + float(one) - 4.0; }
}
