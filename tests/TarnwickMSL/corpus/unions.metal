// Unions in local and device memory.
// @expects 1 128 63 | 2 | 12
#include <metal_stdlib>
using namespace metal;

union Either { float real; uint bits; uchar bytes[4]; };
struct Tagged { int tag; union { float2 pair; int whole; }; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Either* list [[buffer(2)]]) {
    Either e; e.real = in[1];
    out[0] = e.bits == 0x3f800000u ? 1.0 : 0.0;
    list[3] = e;
    out[1] = float(list[3].bytes[2]); out[2] = float(list[3].bytes[3]);
    list[3].bytes[3] = 0x40; list[3].bytes[2] = 0;
    out[3] = list[3].real;
    Tagged t; t.tag = 1; t.whole = 12; t.tag = t.whole;
    out[4] = float(t.tag);
}
