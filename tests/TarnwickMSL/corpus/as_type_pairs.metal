// as_type between every pair of types of 2, 4, 8 and 16 bytes (2.20).
// @expects 15360 1 | 1 513 | 1065353216 1 2 | 1 | 4 3 2 1 | 1 2 | 1 2 3 4 | 1 1 | 2 16384 | -1 | 1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = as_type<ushort>(half(in[1])); out[1] = as_type<half>(short(15360));
    out[2] = as_type<char2>(short(513)).x; out[3] = as_type<ushort>(uchar2(1, 2));
    out[4] = as_type<uint>(in[1]);
    half2 h = as_type<half2>(as_type<uint>(half2(1, in[2])));
    out[5] = h.x; out[6] = h.y;
    out[7] = as_type<float>(as_type<uchar4>(in[1]));
    uchar4 bytes = as_type<uchar4>(0x01020304);
    out[8] = bytes.x; out[9] = bytes.y; out[10] = bytes.z; out[11] = bytes.w;
    float2 pair = as_type<float2>(as_type<long>(float2(in[1], in[2])));
    out[12] = pair.x; out[13] = pair.y;
    short4 four = as_type<short4>(as_type<int2>(short4(1, 2, 3, in[4])));
    out[14] = four.x; out[15] = four.y; out[16] = four.z; out[17] = four.w;
    float4 wide = as_type<float4>(as_type<uint4>(float4(in[1])));
    out[18] = wide.x; out[19] = wide.w;
    ushort2 parts = as_type<ushort2>(in[2]);
    out[20] = parts.x + 2; out[21] = parts.y;
    out[22] = as_type<int>(0xFFFFFFFFu);
    long2 longs = as_type<long2>(uint4(1, 0, 2, 0));
    out[23] = longs.x;
}
