// Arrays of arrays in records in device memory, pointers and references to arrays.
// @expects 5 3 7 | 9 2 | 6
#include <metal_stdlib>
using namespace metal;

struct Cell { float v[4][3]; uchar flags[2][2]; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Cell* cells [[buffer(2)]]) {
    int one = int(in[1]);
    device float (*rows)[3] = cells->v;
    rows[2][one] = 5.0;
    cells[0].v[one][2] = 3.0;
    cells->flags[one][0] = 7;
    device float (&row)[3] = cells->v[3];
    row[0] = 9.0;
    device Cell& next = cells[1];
    next = cells[0];
    next.v[0][0] = 2.0;
    out[0] = next.v[2][1]; out[1] = cells[1].v[1][2]; out[2] = float(next.flags[1][0]);
    out[3] = next.v[3][0]; out[4] = cells[one].v[0][0];
    float sum = 0.0;
    for (int i = 0; i < 4; i++) for (int j = 0; j < 3; j++) sum += cells[0].v[i][j] * in[i == 2 ? 0 : 1];
    out[5] = sum / 2.0;
}
