// A kernel that says how many threads a threadgroup has at most.
// @runs check 64 64
// @expects 64
#include <metal_stdlib>
using namespace metal;

[[max_total_threads_per_threadgroup(64)]]
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], uint i [[thread_position_in_grid]], uint n [[threads_per_threadgroup]]) {
    if (i == 0) out[0] = float(n);
}
