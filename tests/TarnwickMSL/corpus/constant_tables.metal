// Tables in constant memory: scalars, vectors, records and two dimensions, indexed at run time.
// @expects 30 | 5 6 | 2 9 | 7 | 1 0
#include <metal_stdlib>
using namespace metal;

struct Row { int id; float2 at; };
constant int numbers[5] = {10, 20, 30, 40, 50};
constant float2 corners[3] = {float2(1, 2), float2(3, 4), float2(5, 6)};
constant Row rows[2] = {{1, float2(8)}, {2, float2(9)}};
constant float grid[2][3] = {{1, 2, 3}, {6, 7, 8}};
constant float2x2 identity = float2x2(float2(1, 0), float2(0, 1));
int numberAt(int i) { return numbers[i]; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = float(numberAt(int(in[2])));
    float2 corner = corners[int(in[2])];
    out[1] = corner.x; out[2] = corner.y;
    Row row = rows[int(in[1])];
    out[3] = float(row.id); out[4] = row.at.y;
    out[5] = grid[int(in[1])][int(in[1])];
    float2 v = identity * float2(in[1], in[0]);
    out[6] = v.x; out[7] = v.y;
}
