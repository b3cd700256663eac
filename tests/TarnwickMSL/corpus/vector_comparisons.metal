// Comparisons give vectors of bool whose true is 1, for select, any, all and arithmetic.
// @expects 1 0 1 | 1 0 | 5 2 5 | 1 0 1 | 2 | 1 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float3 a = float3(in[1], in[2], in[3]), b = float3(2.0, 2.0, 4.0);
    bool3 less = a < b;
    float3 f = float3(less);
    out[0] = f.x; out[1] = f.y; out[2] = f.z;
    out[3] = any(less) ? 1.0 : 0.0;
    out[4] = all(less) ? 1.0 : 0.0;
    float3 s = select(a, float3(in[5]), less);
    out[5] = s.x; out[6] = s.y; out[7] = s.z;
    bool3 both = less & !(a == float3(in[2]));
    out[8] = both.x ? 1.0 : 0.0; out[9] = both.y ? 1.0 : 0.0; out[10] = float(both[2]);
    int3 counted = int3(less);
    out[11] = float(counted.x + counted.y + counted.z);
    bool3 copy = less;
    copy.y = true;
    out[12] = float(all(copy)); out[13] = float(less.x || less.y);
}
