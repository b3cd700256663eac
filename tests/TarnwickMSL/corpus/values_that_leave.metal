// Values that are made in a loop and used after a break, two levels deep.
// @expects 4 16 | 2 3 | 6 | 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    int found = -1;
    float square = 0.0;
    for (int i = 0; i < 10; i++) {
        square = in[i] * in[i];
        if (square > 12.0) { found = i; break; }
    }
    out[0] = float(found); out[1] = square;
    int fx = 0, fy = 0;
    bool done = false;
    for (int y = 0; y < 5 && !done; y++)
        for (int x = 0; x < 5; x++)
            if (in[x] * in[y] == 6.0) { fx = x; fy = y; done = true; break; }
    out[2] = float(fy); out[3] = float(fx);
    int last = 0, i = 0;
    while (true) { last = i; i += 3; if (i > int(in[7])) break; }
    out[4] = float(last);
    float t = in[1], step = in[4];
    do { step *= 0.5; t += step; if (t > 3.25) break; } while (step > 0.6);
    out[5] = step < 0.75 ? 0.5 : step;
}
