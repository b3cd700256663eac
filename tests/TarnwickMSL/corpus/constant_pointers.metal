// Constant memory behind pointers and in records: dynamic indices, nested records, tables.
// @expects 3 4 5 | 2 9 | 6
#include <metal_stdlib>
using namespace metal;

struct Row { float2 a; float b[2]; };
constant Row rows[2] = {{float2(1.0, 2.0), {3.0, 4.0}}, {float2(5.0, 6.0), {7.0, 9.0}}};
constant int order[3] = {2, 0, 1};
float at(constant Row* row, int n) { return row->b[n]; }
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], constant Row& first [[buffer(3)]]) {
    constant float* p = in + 3;
    for (int i = 0; i < 3; i++) out[i] = *p++;
    out[3] = rows[int(in[0])].a.y;
    out[4] = at(&rows[1], int(in[1]));
    constant Row* view = (constant Row*)(in + 4);
    out[5] = view->b[order[int(in[1])]];
}
