// Packed vectors in records: their size, and reading, writing and arithmetic through them.
// @expects 12 16 | 3 5 | 6 | 9 2
#include <metal_stdlib>
using namespace metal;

struct Packed { packed_float3 at; float weight; };

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = float(sizeof(packed_float3)); out[1] = float(sizeof(Packed));
    Packed item;
    item.at = float3(in[1], in[2], in[3]);
    item.weight = in[5];
    out[2] = item.at.z; out[3] = item.weight;
    float3 loose = float3(item.at) * 2.0;
    out[4] = loose.z;
    item.at.x = in[9];
    out[5] = item.at[0]; out[6] = float3(item.at).y;
}
