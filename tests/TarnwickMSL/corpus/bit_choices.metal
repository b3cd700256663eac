// Choices of bits whose result is selected against one of the two numbers: signs and fields, also
// of a mask that is constant only when a pipeline is made.
// LLVM 15 joins the choice and the selection wrongly on processors with AVX-512.
// @constant rounds 3
// @runs check 8 8
// @expects 1016 | 3068 | 1024 | 1026 | 3076 | 1030 | 1032 | 1033
// @expects 1 | 6 | 11 | 16 | 29 | 26 | 31 | 36
// @expects 0 | 7 | 14 | 21 | 28 | 43 | 42 | 49
// @expects 12601 | 20264 | 24087 | 36038 | 44021 | 53988 | 59507 | 67778
// @expects 553 | 6184 | 11591 | 17158 | 22405 | 18596 | 33219 | 38626
// @expects 12601 | 20264 | 24087 | 36038 | 44021 | 53988 | 59507 | 67778
#include <metal_stdlib>
using namespace metal;

constant uint rounds [[function_constant(0)]];

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  uint i [[thread_position_in_grid]]) {
    const uint word = i * uint(in[1]);
    float sign = float(word & 7u) * 0.5f + 1.0f;
    const float other = float(word) - 5.5f;
    if (word % 3u == 1u)
        sign = copysign(sign, other);
    out[i] = float(int(as_type<uint>(sign) >> 20u));

    const uint first = word * 7u, second = word * 5u + 1u;
    const uint fields = word % 3u == 1u ? (first & 0xaau) | (second & ~0xaau) : second;
    out[8 + i] = float(fields);

    uint inserted = first;
    if (word % 3u == 2u)
        inserted = insert_bits(first, second, 2u, 2u);
    out[16 + i] = float(inserted);

    const uint number = word * 7919u + 12345u, from = word * 5407u + 777u;
    uint digits = number, merged = number, sum = number;
    for (uint k = 0; k < rounds; k++) {
        const uint mask = 15u << (5u * k), digit = (from & 15u) << (5u * k);
        if ((word + k) % 3u == 1u) {
            digits = (digits & ~mask) | digit;
            merged = ((merged ^ from) & mask) ^ from;
            sum = (sum & ~mask) + digit;
        }
    }
    out[24 + i] = float(digits);
    out[32 + i] = float(merged);
    out[40 + i] = float(sum);
}
