// Votes of a SIMD-group, also where only some of its threads take part.
// @runs check 64 64
// @expects 64*1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], uint i [[thread_index_in_threadgroup]], uint lane [[thread_index_in_simdgroup]],
    uint size [[threads_per_simdgroup]]) {
    ulong all = ~0ul >> (64 - size);
    bool isRight = simd_all(i < 64) && !simd_all(lane != 1) && simd_any(lane == 1) && !simd_any(i > 64) &&
                   (ulong)simd_ballot(lane < 2) == 3 && simd_ballot(true).all() && !simd_ballot(false).any() &&
                   (simd_vote::vote_t)simd_active_threads_mask() == all && simd_is_first() == (lane == 0);
    if (lane % 2 == 1) {
        isRight = isRight && simd_sum(1u) == size / 2 && simd_is_first() == (lane == 1) && simd_all(lane % 2 == 1);
        isRight = isRight && !simd_active_threads_mask().all() && simd_broadcast_first(lane) == 1;
    }
    out[i] = isRight ? 1.0 : 0.0;
}
