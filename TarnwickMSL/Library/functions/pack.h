// Conversions to and from words of normalised integers (Metal Shading Language 3.1, 6.13).
#pragma once

#include "math.h"

namespace metal {

// Each component as an integer, rounded to the nearest, ties to even.
MSL_INLINE uint4 _unorm(float4 x, float4 most) {
    return __builtin_convertvector(rint(saturate(x) * most), uint4);
}
MSL_INLINE uint4 _snorm(float4 x, float most) {
    return __builtin_bit_cast(uint4, __builtin_convertvector(rint(clamp(x, -1.0f, 1.0f) * most), int4));
}
MSL_INLINE float _from_srgb(float x) {
    return x <= 0.04045f ? x / 12.92f : precise::powr((x + 0.055f) / 1.055f, 2.4f);
}
MSL_INLINE float _to_srgb(float x) {
    x = saturate(x);
    return x < 0.0031308f ? 12.92f * x : 1.055f * precise::powr(x, 1.0f / 2.4f) - 0.055f;
}

/** Four numbers in [0, 1] as 8 bits each. */
MSL_INLINE uint pack_float_to_unorm4x8(float4 x) {
    uint4 p = _unorm(x, float4(255.0f));
    return p.x | p.y << 8 | p.z << 16 | p.w << 24;
}
/** Four numbers in [-1, 1] as 8 bits each. */
MSL_INLINE uint pack_float_to_snorm4x8(float4 x) {
    uint4 p = _snorm(x, 127.0f) & uint4(0xffu);
    return p.x | p.y << 8 | p.z << 16 | p.w << 24;
}
/** A linear colour in [0, 1] as 8 bits of sRGB for each component. */
MSL_INLINE uint pack_float_to_srgb_unorm4x8(float4 x) {
    return pack_float_to_unorm4x8(float4{_to_srgb(x.x), _to_srgb(x.y), _to_srgb(x.z), x.w});
}
/** Two numbers in [0, 1] as 16 bits each. */
MSL_INLINE uint pack_float_to_unorm2x16(float2 x) {
    uint4 p = _unorm(x.xyxy, float4(65535.0f));
    return p.x | p.y << 16;
}
/** Two numbers in [-1, 1] as 16 bits each. */
MSL_INLINE uint pack_float_to_snorm2x16(float2 x) {
    uint4 p = _snorm(x.xyxy, 32767.0f) & uint4(0xffffu);
    return p.x | p.y << 16;
}
/** Three numbers in [0, 1] as 10 bits each, and one as 2 bits. */
MSL_INLINE uint pack_float_to_unorm10a2(float4 x) {
    uint4 p = _unorm(x, float4{1023.0f, 1023.0f, 1023.0f, 3.0f});
    return p.x | p.y << 10 | p.z << 20 | p.w << 30;
}
/** Three numbers in [0, 1] as 5, 6 and 5 bits. */
MSL_INLINE ushort pack_float_to_unorm565(float3 x) {
    uint4 p = _unorm(x.xyzz, float4{31.0f, 63.0f, 31.0f, 0.0f});
    return static_cast<ushort>(p.x << 11 | p.y << 5 | p.z);
}

/** Four numbers in [0, 1] from 8 bits each. */
MSL_INLINE float4 unpack_unorm4x8_to_float(uint p) {
    uint4 field = uint4{p, p >> 8, p >> 16, p >> 24} & uint4(0xffu);
    return __builtin_convertvector(field, float4) / 255.0f;
}
/** Four numbers in [-1, 1] from 8 bits each. */
MSL_INLINE float4 unpack_snorm4x8_to_float(uint p) {
    int4 field = __builtin_bit_cast(int4, uint4{p << 24, p << 16, p << 8, p}) >> 24;
    return max(__builtin_convertvector(field, float4) / 127.0f, float4(-1.0f));
}
/** The linear colour of 8 bits of sRGB for each component. */
MSL_INLINE float4 unpack_unorm4x8_srgb_to_float(uint p) {
    float4 x = unpack_unorm4x8_to_float(p);
    return {_from_srgb(x.x), _from_srgb(x.y), _from_srgb(x.z), x.w};
}
/** Two numbers in [0, 1] from 16 bits each. */
MSL_INLINE float2 unpack_unorm2x16_to_float(uint p) {
    uint2 field = uint2{p & 0xffffu, p >> 16};
    return __builtin_convertvector(field, float2) / 65535.0f;
}
/** Two numbers in [-1, 1] from 16 bits each. */
MSL_INLINE float2 unpack_snorm2x16_to_float(uint p) {
    int2 field = __builtin_bit_cast(int2, uint2{p << 16, p}) >> 16;
    return max(__builtin_convertvector(field, float2) / 32767.0f, float2(-1.0f));
}
/** Three numbers in [0, 1] from 10 bits each, and one from 2 bits. */
MSL_INLINE float4 unpack_unorm10a2_to_float(uint p) {
    uint4 field = uint4{p & 0x3ffu, p >> 10 & 0x3ffu, p >> 20 & 0x3ffu, p >> 30};
    return __builtin_convertvector(field, float4) / float4{1023.0f, 1023.0f, 1023.0f, 3.0f};
}
/** Three numbers in [0, 1] from 5, 6 and 5 bits. */
MSL_INLINE float3 unpack_unorm565_to_float(ushort given) {
    uint p = given;
    uint3 field = uint3{p >> 11 & 0x1fu, p >> 5 & 0x3fu, p & 0x1fu};
    return __builtin_convertvector(field, float3) / float3{31.0f, 63.0f, 31.0f};
}

#define MSL_BODY(P, N, word)                                                                       \
    MSL_INLINE word pack_half_to_##P(half##N x) { return pack_float_to_##P(_wide(x)); }            \
    MSL_INLINE half##N unpack_##P##_to_half(word p) { return _narrow(unpack_##P##_to_float(p)); }
/** pack_half_to_unorm4x8: Four numbers in [0, 1] as 8 bits each. */
/** unpack_unorm4x8_to_half: Four numbers in [0, 1] from 8 bits each. */
/** pack_half_to_snorm4x8: Four numbers in [-1, 1] as 8 bits each. */
/** unpack_snorm4x8_to_half: Four numbers in [-1, 1] from 8 bits each. */
/** pack_half_to_unorm2x16: Two numbers in [0, 1] as 16 bits each. */
/** unpack_unorm2x16_to_half: Two numbers in [0, 1] from 16 bits each. */
/** pack_half_to_snorm2x16: Two numbers in [-1, 1] as 16 bits each. */
/** unpack_snorm2x16_to_half: Two numbers in [-1, 1] from 16 bits each. */
/** pack_half_to_unorm10a2: Three numbers in [0, 1] as 10 bits each, and one as 2 bits. */
/** unpack_unorm10a2_to_half: Three numbers in [0, 1] from 10 bits each, and one from 2 bits. */
/** pack_half_to_unorm565: Three numbers in [0, 1] as 5, 6 and 5 bits. */
/** unpack_unorm565_to_half: Three numbers in [0, 1] from 5, 6 and 5 bits. */
MSL_BODY(unorm4x8, 4, uint) MSL_BODY(snorm4x8, 4, uint) MSL_BODY(unorm2x16, 2, uint)
MSL_BODY(snorm2x16, 2, uint) MSL_BODY(unorm10a2, 4, uint) MSL_BODY(unorm565, 3, ushort)
#undef MSL_BODY
/** A linear colour in [0, 1] as 8 bits of sRGB for each component. */
MSL_INLINE uint pack_half_to_srgb_unorm4x8(half4 x) { return pack_float_to_srgb_unorm4x8(_wide(x)); }
/** The linear colour of 8 bits of sRGB for each component. */
MSL_INLINE half4 unpack_unorm4x8_srgb_to_half(uint p) {
    return _narrow(unpack_unorm4x8_srgb_to_float(p));
}

} // namespace metal
