// Cases that fall through, share a body, return, lie in any order, and continue a loop around.
// @expects 1 3 6 6 9 | 100 200 300 | 7
#include <metal_stdlib>
using namespace metal;

float fallen(int x) {
    float total = 0.0;
    switch (x) {
        case 3: total += 0.0;
        case 2: total += 3.0;
        case 1: total += 2.0;
        case 0: total += 1.0; break;
        default: total = 9.0;
    }
    return total;
}
float named(uint x) {
    switch (x) {
        default: return 300.0;
        case 1u: case 2u: return 100.0;
        case 7u: return 200.0;
    }
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    for (int i = 0; i < 5; i++) out[i] = fallen(int(in[i]));
    out[5] = named(uint(in[2]));
    out[6] = named(uint(in[7]));
    out[7] = named(uint(in[9]));
    float total = 0.0;
    for (int i = 0; i < 5; i++) {
        switch (int(in[i])) {
            case 1: continue;
            case 3: break;
            case 4: total += 1.0; // and on
            default: total += 0.5; if (i == 4) total += 1.5;
        }
        total += 1.0;
    }
    out[8] = total - 1.0;
}
