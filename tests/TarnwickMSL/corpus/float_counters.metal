// Loops that count in floats: up, down, by a tenth, tested before and after the step, nested.
// @expects 4.5 | 11 | 0 | 10 | 500.5 | 3
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float halves = in[0];
    for (float t = 0.0; t < 3.0; t += 1.0) halves += 0.5 * t + 1.0;
    out[0] = halves;
    float count = in[0];
    for (float t = 0.0; t <= 1.05; t += 0.1f) count += 1.0;
    out[1] = count;
    float sum = in[0];
    for (float y = -1.0; y <= 1.0; y++)
        for (float x = 1.0; x >= -1.0; x--) sum += x * 3.0 + y;
    out[2] = sum;
    float t = 0.0, rounds = in[0];
    do { t += 0.1f; rounds += 1.0; } while (t < 1.0);
    out[3] = rounds;
    float last = in[0];
    for (float i = 1000.5; i > 500.0; i -= 2.0) last = i;
    out[4] = last;
    float found = in[0];
    for (float i = 0.0; i < 300.0; i++) {
        if (i * i > in[8]) { found = i; break; }
    }
    out[5] = found;
}
