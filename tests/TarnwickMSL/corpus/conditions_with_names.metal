// if and switch with an initialiser or a declaration, ranges over arrays, comma, conditional (C++17).
// @expects 4 | 8 | 3 | 6 | 15 | 2 | 9 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    if (int n = int(in[4]); n > 3) out[0] = n;
    if (int m = int(in[8])) out[1] = m;
    switch (int k = int(in[3]); k) {
        case 3: out[2] = k; break;
        default: out[2] = 0;
    }
    float numbers[] = {1, 2, 3}, sum = 0;
    for (float n : numbers) sum += n;
    out[3] = sum;
    for (thread float& n : numbers) n = n * 2 + 1;
    out[4] = numbers[0] + numbers[1] + numbers[2];
    int a, b;
    out[5] = (a = 1, b = a + 1, b);
    (in[1] > 0 ? a : b) = 9;
    out[6] = a; out[7] = b - 1;
    for (int i = 0, j = 10; i < j; i++, j--) out[7] = j - i == 2 ? 1 : out[7];
}
