// Implicit and explicit conversions among bool, integers and floats, and in mixed arithmetic.
// @expects 2 -2 | 1 0 | 3.5 | 1 | 7 | 3 | 4000000000
#include <metal_stdlib>
using namespace metal;

float half_of(int x) { return x * 0.5; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = float(int(in[2] + 0.9)); out[1] = float(int(-in[2] - 0.9));
    bool some = in[3], none = in[0];
    out[2] = some; out[3] = none;
    out[4] = half_of(in[7]);
    int truth = in[2] > in[1];
    out[5] = truth;
    uint u = 5;
    int s = 2;
    out[6] = u + s + in[0];
    out[7] = true + true + some;
    out[8] = 4000000000u + uint(in[0]);
}
