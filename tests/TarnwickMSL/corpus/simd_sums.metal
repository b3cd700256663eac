// Sums, products, extremes and prefixes over a SIMD-group, against the same by hand.
// @runs check 64 64
// @expects 64*1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], uint i [[thread_index_in_threadgroup]], uint lane [[thread_index_in_simdgroup]],
    uint size [[threads_per_simdgroup]]) {
    uint first = i - lane, sum = 0, prefix = 0;
    for (uint j = 0; j < size; j++) { sum += first + j; prefix += j < lane ? first + j : 0; }
    bool isRight = simd_sum(i) == sum && simd_sum(float(i)) == float(sum) && simd_max(int(i)) == int(first + size - 1) &&
                   simd_min(ushort(i)) == first && simd_product(lane == 1 ? 3 : 1) == 3 &&
                   simd_prefix_exclusive_sum(i) == prefix && simd_prefix_inclusive_sum(float(i)) == float(prefix + i) &&
                   simd_prefix_exclusive_product(2.0f) == exp2(float(lane)) &&
                   simd_prefix_inclusive_product(lane < 3 ? 2u : 1u) == (lane < 3 ? 2u << lane : 8u) &&
                   simd_and(lane | 4u) == 4u && simd_or(lane) == size - 1 && simd_xor(lane < 2 ? lane + 1 : 0u) == 3u;
    float2 pair = simd_sum(float2(1.0, float(lane)));
    half3 three = simd_max(half3(half(lane), 1.0h, -half(lane)));
    isRight = isRight && pair.x == float(size) && pair.y == float(size * (size - 1) / 2) &&
              three.x == half(size - 1) && three.z == 0.0h && simd_sum(char(-1)) == char(-int(size));
    out[i] = isRight ? 1.0 : 0.0;
}
