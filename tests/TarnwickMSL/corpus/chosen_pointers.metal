// Pointers that a condition, a switch or a loop chooses, among places of one buffer and of several.
// @expects 5 2 | 8 4 | 30 31 32 | 6
#include <metal_stdlib>
using namespace metal;

device float* pick(device float* a, device float* b, int n) {
    switch (n) { case 1: return a; case 2: return b; default: return a + n; }
}
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device float* other [[buffer(2)]]) {
    int two = int(in[2]);
    device float* p = two > 1 ? out : other;
    p[0] = 5.0;
    *(two > 2 ? out + 9 : out + 1) = 2.0;
    device float* q = other;
    for (int i = 0; i < 4; i++) { if (i == two) q = out; q[i] = 2.0 * float(i + 2); }
    out[3] = other[0];
    for (int i = 0; i < 3; i++) *pick(out + 4 + i, other, i == 3 ? two : 1) = float(30 + i);
    float local[4] = {in[3], in[4], in[5], in[6]};
    const float table[2] = {1.0, 2.0};
    const thread float* r = two == 2 ? local : table;
    out[7] = r[3];
}
