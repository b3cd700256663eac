// Memory seen as other types: bits, bytes, vectors, records.
// @expects 1.5 2 3 4 | -2 | 4 8
#include <metal_stdlib>
using namespace metal;

struct Pair { half2 h; uint u; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device uchar* bytes [[buffer(2)]]) {
    device uint* bits = (device uint*)out;
    bits[0] = as_type<uint>(1.5f);
    *reinterpret_cast<device packed_float3*>(out + 1) = packed_float3(2.0, 3.0, 4.0);
    bytes[int(in[3])] = 0xc0;
    out[4] = ((device float*)bytes)[0];
    device Pair* pair = (device Pair*)(bytes + 8);
    pair->h = half2(4.0h, in[1]); pair->u = 8;
    out[5] = float(*(device half*)(bytes + 8));
    out[6] = float(bytes[12] + bytes[13]);
}
