// Values of other lanes of a SIMD-group; lanes without a partner keep what they have.
// @runs check 64 64
// @expects 64*1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], uint i [[thread_index_in_threadgroup]], uint lane [[thread_index_in_simdgroup]],
    uint size [[threads_per_simdgroup]]) {
    uint first = i - lane, last = size - 1;
    bool isRight = simd_broadcast(i, 2) == first + 2 && simd_broadcast_first(float(i)) == float(first) &&
                   simd_shuffle(i, ushort(last - lane)) == first + last - lane && simd_shuffle_xor(i, 1) == (i ^ 1u) &&
                   simd_shuffle_up(i, 2) == (lane < 2 ? i : i - 2) &&
                   simd_shuffle_down(int(i), 1) == int(lane == last ? i : i + 1) &&
                   simd_shuffle_rotate_up(i, 1) == first + (lane + last) % size &&
                   simd_shuffle_rotate_down(i, 3) == first + (lane + 3) % size &&
                   simd_shuffle_and_fill_up(i, i + 100, 1) == (lane == 0 ? first + last + 100 : i - 1) &&
                   simd_shuffle_and_fill_down(i, i + 100, 2) == (lane + 2 < size ? i + 2 : i + 102 - size) &&
                   simd_shuffle_and_fill_down(i, i + 100, 1, 4) == (lane % 4 < 3 ? i + 1 : i + 97);
    float4 four = simd_shuffle_xor(float4(float(i)), 2);
    out[i] = isRight && four.w == float(i ^ 2u) ? 1.0 : 0.0;
}
