// Functions of one name for different types and counts, and default arguments.
// @expects 1 2 3 4 5 | 6 | 7 8
#include <metal_stdlib>
using namespace metal;

float which(float) { return 1.0; }
float which(int) { return 2.0; }
float which(uint) { return 3.0; }
float which(half) { return 4.0; }
float which(float2) { return 5.0; }
float which(float, float) { return 6.0; }
float plus(float a, float b = 3.0) { return a + b; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = which(in[0]);
    out[1] = which(int(in[0]));
    out[2] = which(uint(in[0]));
    out[3] = which(half(in[0]));
    out[4] = which(float2(in[0]));
    out[5] = which(in[0], in[1]);
    out[6] = plus(in[4]);
    out[7] = plus(in[4], in[4]);
}
