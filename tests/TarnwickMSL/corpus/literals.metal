// Literals of every base and suffix (2.1).
// @expects 255 | 8 | 10 | 1000000 | 1.5 | 1.5 | 0.25 | 4294967296 | 4294967295 | 97 | 4 2 8 | 0.1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]]) {
    out[0] = 0xFF;
    out[1] = 010;
    out[2] = 0b1010;
    out[3] = 1'000'000;
    out[4] = 1.5f;
    out[5] = 1.5h;
    out[6] = 0x1p-2f;
    out[7] = float(0x100000000l);
    out[8] = float(4294967295u);
    out[9] = 'a';
    out[10] = sizeof(1u); out[11] = sizeof(1.H); out[12] = sizeof(1ul);
    out[13] = 1.e-1F;
}
