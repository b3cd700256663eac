// sizeof, alignof and alignas, of scalars, vectors, records and arrays (2.5).
// @expects 1 2 4 8 | 8 16 16 4 | 16 16 | 32 16 | 32 12 | 16 4
#include <metal_stdlib>
using namespace metal;

struct alignas(16) Padded { float x; };
struct Mixed { char c; float3 v; char d; };
struct Rows { half a; float b; long c; };

kernel void check(device float* out [[buffer(0)]]) {
    out[0] = sizeof(bool); out[1] = sizeof(half); out[2] = sizeof(uint); out[3] = sizeof(long);
    out[4] = sizeof(float2); out[5] = sizeof(float3); out[6] = alignof(int3); out[7] = alignof(uchar4);
    out[8] = sizeof(Padded); out[9] = alignof(Padded);
    out[10] = sizeof(Mixed) - 16; out[11] = alignof(Mixed);
    struct Arrayed { float3 a; Rows r[1]; };
    out[12] = sizeof(Arrayed);
    out[13] = sizeof(packed_float3);
    out[14] = sizeof(Rows); out[15] = alignof(packed_float4);
}
