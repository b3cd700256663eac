// Local arrays of pointers, and of records that hold pointers, by an index that only the GPU knows.
// @expects 4 5 | 6 | 30 20 | 8
#include <metal_stdlib>
using namespace metal;

struct Source { constant float* values; int count; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  device float* scratch [[buffer(2)]]) {
    int one = int(in[1]);
    device float* list[4];
    for (int i = 0; i < 4; i++) list[i] = i % 2 ? out + i / 2 : scratch + i;
    *list[one] = 4.0; *list[one + 2] = 5.0; *list[one * 2] = 6.0;
    out[2] = scratch[2];
    Source sources[3];
    sources[0] = {in + 10, 1}; sources[1] = {in + 20, 2}; sources[one + 1] = {in + 30, 3};
    Source chosen = sources[one * 2];
    out[3] = chosen.values[0];
    out[4] = *sources[one].values;
    thread float a = 1.0, b = 2.0;
    thread float* pair[2] = {&a, &b};
    *pair[one] += 5.0;
    out[5] = a + b;
}
