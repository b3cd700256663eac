// Pack and unpack functions of normalised bytes, shorts, ten bits, halves and sRGB (6.14).
// @expects 4278255615 | 2147418239 | 1 0 1 1 | -1 1 | 65535 | 1 0.5 | 1 0 0 1 | 0.21586 | 255
// @within 4e-3
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float4 colour = float4(in[1], in[0], in[2], in[1]);
    out[0] = pack_float_to_unorm4x8(colour);
    out[1] = pack_float_to_snorm2x16(float2(-1, 1) * float2(-1, 1)) - (1u << 16);
    float4 back = unpack_unorm4x8_to_float(pack_float_to_unorm4x8(colour));
    out[2] = back.x; out[3] = back.y; out[4] = back.z; out[5] = back.w;
    float2 pair = unpack_snorm2x16_to_float(pack_float_to_snorm2x16(float2(-5, in[1])));
    out[6] = pair.x; out[7] = pair.y;
    out[8] = pack_float_to_unorm2x16(float2(in[1], in[0]));
    half2 halves = unpack_unorm2x16_to_half(pack_half_to_unorm2x16(half2(1, 0.5)));
    out[9] = halves.x; out[10] = halves.y;
    float4 tens = unpack_unorm10a2_to_float(pack_float_to_unorm10a2(float4(1, 0, 0, 1)));
    out[11] = tens.x; out[12] = tens.y; out[13] = tens.z; out[14] = tens.w;
    out[15] = unpack_unorm4x8_srgb_to_float(128u * uint(in[1])).x;
    out[16] = pack_float_to_srgb_unorm4x8(float4(in[1], 0, 0, 0));
}
