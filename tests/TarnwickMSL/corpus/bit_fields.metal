// Bit fields in memory: signed, unsigned, side by side in one word, across words.
// @expects 21 1000 40000 | -3 7 | 5 9
#include <metal_stdlib>
using namespace metal;

struct Fields { uint low : 5; uint middle : 11; uint high : 16; int small : 4; uint more : 3; };
struct Narrow { uchar a : 3; uchar b : 5; ushort c : 9; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Fields* f [[buffer(2)]]) {
    f[1].low = uint(in[21]); f[1].middle = 1000; f[1].high = 40000;
    f[1].small = int(in[0]) - 3; f[1].more = 7;
    out[0] = float(f[1].low); out[1] = float(f[1].middle); out[2] = float(f[1].high);
    out[3] = float(f[1].small); out[4] = float(f[1].more);
    Narrow n = {uchar(in[5]), 9, 300};
    n.c += n.b;
    out[5] = float(n.a); out[6] = float(n.c - 300);
}
