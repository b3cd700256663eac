// Functions with returns in loops, in branches, in nested loops and in switches.
// @expects 3 -1 | 12 | 5 50 500
#include <metal_stdlib>
using namespace metal;

int firstAbove(constant float* in, float limit) {
    for (int i = 0; i < 8; i++)
        if (in[i] > limit) return i;
    return -1;
}
float product(constant float* in, int stop) {
    for (int y = 1; y < 6; y++)
        for (int x = 1; x < 6; x++) {
            if (x * y > stop) return in[x] * in[y];
            if (x > y) break;
        }
    return 0.0;
}
float graded(float x) {
    if (x < 1.0) return 5.0;
    switch (int(x)) {
        case 1: return 50.0;
        default: if (x > 2.0) return 500.0;
    }
    return 0.0;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = float(firstAbove(in, 2.5));
    out[1] = float(firstAbove(in, 90.0));
    out[2] = product(in, 10);
    out[3] = graded(in[0]);
    out[4] = graded(in[1]);
    out[5] = graded(in[3]);
}
