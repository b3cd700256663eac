// Packed vectors of every element: sizes, arithmetic and conversions (2.2.3).
// @expects 2 3 4 6 8 12 16 | 24 | 1 2 3 | 8 10 12 | 5 7 | 255 0 | 1 0 1 | 10
#include <metal_stdlib>
using namespace metal;

struct Row { packed_float3 at; half left; packed_uchar3 colour; packed_short2 cell; };

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = sizeof(packed_char2); out[1] = sizeof(packed_uchar3); out[2] = sizeof(packed_half2);
    out[3] = sizeof(packed_ushort3); out[4] = sizeof(packed_float2); out[5] = sizeof(packed_int3);
    out[6] = sizeof(packed_uint4);
    out[7] = sizeof(Row);
    Row row = {packed_float3(in[1], in[2], in[3]), 1, packed_uchar3(9), packed_short2(5, 7)};
    out[8] = row.at.x; out[9] = row.at.y; out[10] = row.at.z;
    packed_int3 a = packed_int3(int3(1, 2, 3)), b = packed_int3(7, 8, 9);
    int3 sum = a + b;
    out[11] = sum.x; out[12] = sum.y; out[13] = sum.z;
    out[14] = row.cell.x; out[15] = row.cell[1];
    packed_uchar4 small = packed_uchar4(uchar4(255, 0, 1, 2));
    out[16] = small.r; out[17] = small.g;
    float3 away = row.at;
    row.at = away.zyx - 2;
    out[18] = row.at.x; out[19] = row.at.y; out[20] = -row.at.z;
    row.at *= 5.0f;
    out[21] = 2 * row.at.x;
}
