// Pointers into device memory: arithmetic, differences, comparisons, members, loops.
// @expects 3 7 8 | 5 1 0 1 | 12 9
#include <metal_stdlib>
using namespace metal;

struct Point { float2 at; int count; };
void bump(device Point* p, int by) { p->count += by; p->at.y = float(by); }
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Point* points [[buffer(2)]]) {
    device float* end = out + 3;
    float value = 3.0;
    for (device float* p = out; p != end; ++p) { *p = value; value += 4.0; }
    *(end - 1) -= 3.0;
    device const float* five = &out[5];
    out[3] = float(five - out);
    out[4] = five > out ? 1.0 : 0.0;
    out[5] = five == out + 4 ? 1.0 : 0.0;
    out[6] = five != nullptr ? 1.0 : 0.0;
    points[2].count = int(in[5]);
    bump(points + 1 + int(in[1]), 7);
    device int* count = &points[2].count;
    out[7] = float(*count);
    device Point* p = points + 3;
    p[-1].at.x = in[2];
    out[8] = points[2].at.x + (*(p - 1)).at.y;
}
