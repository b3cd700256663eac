// Hints to unroll loops and to keep them, in all forms; loops that count in floats.
// @expects 780 | 19900 | 6 | 435 | 36 | 45 | 6 | 45 | 4.5 | 11 | 0
#include <metal_stdlib>
using namespace metal;

#define UNROLL _Pragma("unroll")

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    int zero = int(in[0]), nine = int(in[9]);
    int sums[8] = {zero, zero, zero, zero, zero, zero, zero, zero};
#pragma unroll
    for (int i = 0; i < 40; i++) sums[0] += i;
#pragma unroll(4)
    for (int i = 0; i < 200; i++) sums[1] += i;
#pragma nounroll
    for (int i = 0; i < 4; i++) sums[2] += i;
#pragma clang loop unroll(full)
    for (int i = 0; i < 30; i++) sums[3] += i;
#pragma clang loop unroll_count(2)
    for (int i = 0; i < nine; i++) sums[4] += i;
    UNROLL for (int i = 0; i <= nine; i++) sums[5] += i;
    [[unroll]] for (int i = 0; i < 4; i++) sums[6] += i;
    [[nounroll]] for (int i = 0; i < 5; i++)
        [[unroll(2)]] for (int j = 0; j < 3; j++) sums[7] += i + j - 0 * zero;
    for (int i = 0; i < 8; i++) out[i] = float(sums[i]);
    float halves = in[0];
    for (float t = 0.0; t < 3.0; t += 1.0) halves += 0.5 * t + 1.0;
    out[8] = halves;
    float count = in[0];
    for (float t = 0.0; t <= 1.05; t += 0.1f) count += 1.0;
    out[9] = count;
    float sum = in[0];
    for (float y = -1.0; y <= 1.0; y++)
        for (float x = 1.0; x >= -1.0; x--) sum += x * 3.0 + y;
    out[10] = sum;
}
