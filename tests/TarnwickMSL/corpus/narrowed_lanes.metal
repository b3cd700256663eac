// Single lanes of vectors that were narrowed: of bytes and shorts made from wider lanes (2.20).
// @expects 7 1 | 5 | 65000 3 | 254 | 2 0 | 134
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float4* in [[buffer(1)]],
                  device uint4* words [[buffer(2)]]) {
    words[0] = uint4(0x107, 0x201, 5 << 16 | 65000, 0xFFFFFFFEu);
    words[1] = uint4(int4(in[0])) + 0x10000u;
    threadgroup_barrier(mem_flags::mem_device);
    uchar2 bytes = uchar2(words[0].xy);
    out[0] = bytes.x; out[1] = bytes.y;
    ushort2 parts = as_type<ushort2>(words[0].z);
    out[2] = parts.y;
    ushort4 shorts = ushort4(words[0].zw, words[1].wx);
    out[3] = shorts.x; out[4] = shorts.z;
    uchar4 four = uchar4(words[0]);
    out[5] = four.w;
    out[6] = uchar3(words[1].zyx).x; out[7] = ushort3(words[1].yzx).z;
    out[8] = uchar4(as_type<int4>(in[16]) >> 16).w;
}
