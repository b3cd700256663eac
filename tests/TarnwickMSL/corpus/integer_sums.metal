// addsat, subsat, hadd, rhadd, absdiff, abs, min3, max3, median3, clamp of integers (6.3).
// @expects 255 -128 | 0 4294967295 | 5 6 | 2147483648 | 4294967295 | 7 | 1 9 4 | 200 | 3 3 | 32767
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = addsat(uchar(in[200]), uchar(in[100])); out[1] = subsat(char(-in[100]), char(in[100]));
    out[2] = subsat(uint(in[3]), 4u); out[3] = addsat(~0u, uint(in[1]));
    out[4] = hadd(int(in[4]), 7); out[5] = rhadd(int(in[4]), 7);
    out[6] = float(rhadd(~0u, uint(in[1])));
    out[7] = absdiff(int(in[1]) << 31, 2147483647);
    out[8] = abs(-int(in[7]));
    int a = int(in[4]);
    out[9] = min3(a, 9, 1); out[10] = max3(a, 9, 1); out[11] = median3(a, 9, 1);
    out[12] = clamp(ushort(in[250]), ushort(100), ushort(200));
    int2 c = clamp(int2(-5, 8), 3, 3);
    out[13] = c.x; out[14] = c.y;
    out[15] = addsat(short2(32000), short2(1000)).y;
}
