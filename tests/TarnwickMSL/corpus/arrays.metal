// Arrays of two dimensions, of records and of vectors, with indices known only at run time.
// @expects 0 1 4 9 | 23 | 6 | 15 0 | 4
#include <metal_stdlib>
using namespace metal;

struct Item { float weight; int2 at; };
float sum(thread float (&values)[4]) {
    float total = 0.0;
    for (int i = 0; i < 4; i++) total += values[i];
    return total;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float squares[4];
    for (int i = 0; i < 4; i++) squares[i] = in[i] * in[i];
    for (int i = 0; i < 4; i++) out[i] = squares[int(in[i])];
    int table[3][4];
    for (int y = 0; y < 3; y++)
        for (int x = 0; x < 4; x++) table[y][x] = y * 10 + x;
    out[4] = float(table[int(in[2])][int(in[3])]);
    Item items[5] = {};
    items[int(in[4])].at.y = 6;
    out[5] = float(items[4].at.y);
    float few[4] = {in[7], in[8]};
    out[6] = sum(few); out[7] = few[int(in[3])];
    float3 points[2] = {float3(in[1]), float3(in[2])};
    points[int(in[1])].xz += 2.0;
    out[8] = points[1].z;
}
