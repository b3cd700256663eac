// as_type between floats, integers, vectors and pairs of halves.
// @expects 1065353216 | 1 | 2 | 1 2 | 16256 | -1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = float(as_type<uint>(in[1]));
    out[1] = as_type<float>(0x3f800000u) * in[1];
    uint2 bits = as_type<uint2>(float2(in[1], in[2]));
    out[2] = as_type<float>(bits.y);
    half2 pair = as_type<half2>(0x40003c00u + uint(in[0]));
    out[3] = float(pair.x); out[4] = float(pair.y);
    ushort2 words = as_type<ushort2>(in[1]);
    out[5] = float(words.y);
    out[6] = float(as_type<int>(0xffffffffu - uint(in[0])));
}
