// switch over chars, unsigned and 64-bit integers, enumerations, with ranges that overlap in value (1.5).
// @expects 1 2 3 | 20 | 5 | 0
#include <metal_stdlib>
using namespace metal;

enum class Level : uchar { low, high = 200 };
float of(char c) {
    switch (c) {
        case 'a': return 1;
        case -128: return 2;
        case '\n': return 3;
    }
    return 0;
}
float of(ulong n) {
    switch (n) {
        case 1ul << 40: return 20;
        case 0: return 5;
        default: break;
    }
    return 0;
}
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = of(char(in[97])); out[1] = of(char(-128)); out[2] = of(char(in[10]));
    out[3] = of(ulong(in[1]) << 40);
    out[4] = of(ulong(in[0]));
    Level level = Level(uchar(in[200]));
    switch (level) {
        case Level::low: out[5] = 1; break;
        case Level::high: out[5] = 0; break;
    }
}
