// Unions, of scalars and vectors, with anonymous ones inside records (1.5).
// @expects 1065353216 | 1 2 3 | 4 | 16
#include <metal_stdlib>
using namespace metal;

union Bits { float number; uint word; };
struct Point {
    union {
        struct { float x, y, z; };
        float at[3];
    };
};
union Lanes { float4 vector; float each[4]; };

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Bits bits;
    bits.number = in[1];
    out[0] = bits.word;
    Point p;
    p.x = in[1]; p.y = in[2]; p.at[2] = in[3];
    out[1] = p.at[0]; out[2] = p.at[1]; out[3] = p.z;
    Lanes lanes = {float4(1, 2, 3, in[4])};
    out[4] = lanes.each[int(in[3])];
    out[5] = sizeof(Lanes);
}
