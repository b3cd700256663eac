// Buffers of vectors, and of records of them, accessed as consecutive scalars, in loops of known length too.
// @expects 928 | 65 | 41 | 9 12 | 4 8
#include <metal_stdlib>
using namespace metal;

struct Pair { float4 a; half4 b, c; };
kernel void check(device float* out [[buffer(0)]], constant float4* in [[buffer(1)]], device uint4* scratch [[buffer(2)]]) {
    device uint* words = (device uint*)(scratch + 3);
    for (uint i = 0; i < 31; i++) words[i] = i;
    uint sum = 0;
    for (uint i = 0; i < 31; i++) sum = (sum * 5 + words[i]) % 1021;
    out[0] = float(sum);

    constant float* numbers = (constant float*)(in + 1);
    float total = 0;
    for (uint i = 0; i < 10; i++) total += numbers[i] - 2;
    out[1] = total;

    device Pair* pair = (device Pair*)(scratch + 8);
    device float* floats = (device float*)pair;
    for (uint i = 0; i < 4; i++) floats[i] = float(i) + 0.5f;
    for (uint i = 0; i < 8; i++) ((device half*)pair)[i + 8] = half(i);
    out[2] = pair->a.x + pair->a.w + float(pair->b.w + pair->c.w) + float(pair[0].c.x) * 6.75f;
    out[3] = float(scratch[4].x) + float(scratch[4].y);
    out[4] = float(scratch[3].w) * 4;
    for (int i = 1; i < 3; i++) out[4 + i] = float(words[i * 2]) * 2;
}
