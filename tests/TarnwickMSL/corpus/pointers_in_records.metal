// Pointers as members of records that are passed by value and nested.
// @expects 10 2 | 7 | 3
#include <metal_stdlib>
using namespace metal;

struct Source { constant float* values; int count; };
struct Sink { device float* values; device int& total; };
struct Both { Source from; Sink to; };
float sum(Source s) { float all = 0.0; for (int i = 0; i < s.count; i++) all += s.values[i]; return all; }
void fill(Both both) { both.to.values[0] = sum(both.from); both.to.total += both.from.count; }
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device int& total [[buffer(2)]]) {
    Both both{{in + 1, 4}, {out, total}};
    fill(both);
    out[1] = float(total) - 2.0;
    Source later = both.from;
    later.values += 6;
    out[2] = *later.values;
    both.to.values = out + 3;
    *both.to.values = 3.0;
}
