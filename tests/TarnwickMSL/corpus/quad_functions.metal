// What the four threads of a quad tell each other.
// @runs check 16 16
// @expects 16*1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], uint i [[thread_index_in_threadgroup]], uint q [[thread_index_in_quadgroup]]) {
    uint first = i - q;
    bool isRight = quad_sum(i) == 4 * first + 6 && quad_max(float(i)) == float(first + 3) && quad_min(int(i)) == int(first) &&
                   quad_product(half(q + 1)) == 24.0h && quad_and(q | 4) == 4 && quad_or(q) == 3 && quad_xor(q + 1) == 4 &&
                   quad_prefix_exclusive_sum(q) == q * (q - 1) / 2 && quad_prefix_inclusive_sum(1u) == q + 1 &&
                   quad_broadcast(i, 2) == first + 2 && quad_broadcast_first(i) == first && quad_shuffle(i, 3 - q) == first + 3 - q &&
                   quad_shuffle_xor(i, 1) == (i ^ 1u) && quad_shuffle_up(i, 1) == (q == 0 ? i : i - 1) &&
                   quad_shuffle_down(i, 2) == (q > 1 ? i : i + 2) && quad_shuffle_rotate_down(i, 1) == first + (q + 1) % 4 &&
                   quad_shuffle_and_fill_up(i, 50u, 1) == (q == 0 ? 50 : i - 1) &&
                   quad_shuffle_rotate_up(i, 1) == first + (q + 3) % 4 && quad_shuffle_and_fill_down(i, 50u, 1) == (q == 3 ? 50 : i + 1) &&
                   quad_prefix_exclusive_product(q + 1) == (q < 2 ? 1 : 4 * q - 6) &&
                   quad_prefix_inclusive_product(half(q + 1)) == quad_prefix_exclusive_product(half(q + 1)) * half(q + 1) &&
                   quad_all(i < 16) && quad_any(q == 3) && !quad_any(q > 3) && (ushort)quad_ballot(q > 1) == 12 && quad_is_first() == (q == 0);
    if (q != 2) isRight = isRight && quad_sum(1) == 3 && (quad_vote::vote_t)quad_active_threads_mask() == 11;
    out[i] = isRight ? 1.0 : 0.0;
}
