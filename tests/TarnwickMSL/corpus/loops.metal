// for, while and do with break and continue, nested, with several counters and none.
// @expects 10 | 4 | 1 | 12 | 55 | 3
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float a = 0.0;
    for (int i = 0; i < 5; ++i) a += in[i];
    out[0] = a;
    int n = int(in[9]), steps = 0;
    while (n > 1) { n /= 2; if (n == 1) break; steps++; }
    out[1] = float(steps + 2);
    int once = 0;
    do { once++; } while (once < int(in[0]));
    out[2] = float(once);
    float pairs = 0.0;
    for (int y = 0; y < 4; y++)
        for (int x = 0; x < 4; x++) {
            if (x == y) continue;
            pairs += 1.0;
        }
    out[3] = pairs;
    int low = 1, high = int(in[10]), sum = 0;
    for (; low <= high; low++, high--) sum += low == high ? low : low + high;
    out[4] = float(sum);
    int k = 0;
    for (;;) { if (++k >= int(in[3])) break; }
    out[5] = float(k);
}
