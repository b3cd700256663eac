// Pixel types (Metal Shading Language 3.1, 2.7): a value of T, stored in the format that the name says.
// Reading converts to T; storing rounds to the nearest value of the format.
#pragma once

#include "pack.h"

namespace metal {

MSL_INLINE float4 _pixel_lanes(float v) { return {v, 0, 0, 1}; }
MSL_INLINE float4 _pixel_lanes(float2 v) { return {v.x, v.y, 0, 1}; }
MSL_INLINE float4 _pixel_lanes(float3 v) { return {v.x, v.y, v.z, 1}; }
MSL_INLINE float4 _pixel_lanes(float4 v) { return v; }
MSL_INLINE float4 _pixel_lanes(half v) { return {float(v), 0, 0, 1}; }
MSL_INLINE float4 _pixel_lanes(half2 v) { return _pixel_lanes(_wide(v)); }
MSL_INLINE float4 _pixel_lanes(half3 v) { return _pixel_lanes(_wide(v)); }
MSL_INLINE float4 _pixel_lanes(half4 v) { return _wide(v); }

template <class T> struct _pixel_value;
#define MSL_BODY(T, N, part)                                                                       \
    template <> struct _pixel_value<T> {                                                           \
        static constexpr int lanes = N;                                                            \
        static MSL_INLINE T of(float4 v) { return part; }                                          \
    };
MSL_BODY(float, 1, v.x) MSL_BODY(float2, 2, v.xy) MSL_BODY(float3, 3, v.xyz) MSL_BODY(float4, 4, v)
MSL_BODY(half, 1, half(v.x)) MSL_BODY(half2, 2, _narrow(v.xy)) MSL_BODY(half3, 3, _narrow(v.xyz))
MSL_BODY(half4, 4, _narrow(v))
#undef MSL_BODY

// Components of their own, with the alignment of one. `most` is the integer of 1.
template <class C, int N, int most> struct _normalised {
    static constexpr int lanes = N;
    C parts[N];
    MSL_INLINE void store(float4 v) {
        for (int lane = 0; lane < N; lane++)
            parts[lane] = C(rint(clamp(v[lane], is_signed_v<C> ? -1.0f : 0.0f, 1.0f) * float(most)));
    }
    MSL_INLINE float4 load() const {
        float4 v = {0, 0, 0, 1};
        for (int lane = 0; lane < N; lane++)
            v[lane] = max(float(parts[lane]) / float(most), -1.0f);
        return v;
    }
};
struct _srgb_pixel : _normalised<uchar, 4, 255> {
    MSL_INLINE void store(float4 v) {
        _normalised::store(float4{_to_srgb(v.x), _to_srgb(v.y), _to_srgb(v.z), v.w});
    }
    MSL_INLINE float4 load() const {
        float4 v = _normalised::load();
        return {_from_srgb(v.x), _from_srgb(v.y), _from_srgb(v.z), v.w};
    }
};
struct _10a2_pixel {
    static constexpr int lanes = 4;
    uint word;
    MSL_INLINE void store(float4 v) { word = pack_float_to_unorm10a2(v); }
    MSL_INLINE float4 load() const { return unpack_unorm10a2_to_float(word); }
};

// Floats without a sign, of 5 bits of exponent and 10 - `cut` of mantissa: a half without its sign
// and its last bits. Numbers beyond the greatest become the greatest, negative ones 0.
MSL_INLINE uint _small_float(float x, uint cut) {
    x = x < 0.0f ? 0.0f : x > 65504.0f && x < INFINITY ? 65504.0f : x;
    uint bits = as_type<ushort>(half(x));
    uint special = bits >> cut | uint(x != x);
    uint rounded = (bits + (1u << (cut - 1)) - 1 + (bits >> cut & 1)) >> cut;
    uint greatest = 0x7bffu >> cut;
    return bits >= 0x7c00u ? special : rounded > greatest ? greatest : rounded;
}
MSL_INLINE float _from_small_float(uint bits, uint cut) {
    return float(as_type<half>(ushort(bits << cut)));
}
struct _11_11_10_pixel {
    static constexpr int lanes = 3;
    uint word;
    MSL_INLINE void store(float4 v) {
        word = _small_float(v.x, 4) | _small_float(v.y, 4) << 11 | _small_float(v.z, 5) << 22;
    }
    MSL_INLINE float4 load() const {
        return {_from_small_float(word & 0x7ffu, 4), _from_small_float(word >> 11 & 0x7ffu, 4),
                _from_small_float(word >> 22, 5), 1};
    }
};

// Three mantissas of 9 bits and one exponent (Vulkan 1.3, 3.10.3).
struct _9e5_pixel {
    static constexpr int lanes = 3;
    uint word;
    MSL_INLINE void store(float4 v) {
        constexpr float greatest = 65408.0f;
        v.x = v.x > 0.0f ? min(v.x, greatest) : 0.0f;
        v.y = v.y > 0.0f ? min(v.y, greatest) : 0.0f;
        v.z = v.z > 0.0f ? min(v.z, greatest) : 0.0f;
        float most = max(max(v.x, v.y), v.z);
        int exponent = max(int(as_type<uint>(most) >> 23) - 127, -16) + 16;
        exponent += int(rint(most * _power(24 - exponent)) == 512.0f);
        uint3 parts = __builtin_convertvector(rint(v.xyz * _power(24 - exponent)), uint3);
        word = parts.x | parts.y << 9 | parts.z << 18 | uint(exponent) << 27;
    }
    MSL_INLINE float4 load() const {
        float scale = _power(int(word >> 27) - 24);
        return {float(word & 0x1ffu) * scale, float(word >> 9 & 0x1ffu) * scale,
                float(word >> 18 & 0x1ffu) * scale, 1};
    }

  private:
    static MSL_INLINE float _power(int n) { return as_type<float>((n + 127) << 23); } // of 2
};

template <class T, class Format> struct _pixel {
    static_assert(_pixel_value<T>::lanes == Format::lanes,
                  "a pixel type holds a value of half or float with the components of its name");
    _pixel() = default;
    MSL_INLINE _pixel(T value) { stored.store(_pixel_lanes(value)); }
    MSL_INLINE operator T() const { return value(); }
    MSL_INLINE T value() const { return _pixel_value<T>::of(stored.load()); }
#define MSL_BODY(op)                                                                               \
    friend MSL_INLINE T operator op(_pixel a, _pixel b) { return a.value() op b.value(); }         \
    friend MSL_INLINE T operator op(_pixel a, T b) { return a.value() op b; }                      \
    friend MSL_INLINE T operator op(T a, _pixel b) { return a op b.value(); }                      \
    MSL_INLINE _pixel& operator op##=(T b) { return *this = value() op b; }
    MSL_BODY(+) MSL_BODY(-) MSL_BODY(*) MSL_BODY(/)
#undef MSL_BODY

  private:
    Format stored;
};

template <class T> using r8unorm = _pixel<T, _normalised<uchar, 1, 255>>;
template <class T> using r8snorm = _pixel<T, _normalised<char, 1, 127>>;
template <class T> using r16unorm = _pixel<T, _normalised<ushort, 1, 65535>>;
template <class T> using r16snorm = _pixel<T, _normalised<short, 1, 32767>>;
template <class T> using rg8unorm = _pixel<T, _normalised<uchar, 2, 255>>;
template <class T> using rg8snorm = _pixel<T, _normalised<char, 2, 127>>;
template <class T> using rg16unorm = _pixel<T, _normalised<ushort, 2, 65535>>;
template <class T> using rg16snorm = _pixel<T, _normalised<short, 2, 32767>>;
template <class T> using rgba8unorm = _pixel<T, _normalised<uchar, 4, 255>>;
template <class T> using rgba8snorm = _pixel<T, _normalised<char, 4, 127>>;
template <class T> using rgba16unorm = _pixel<T, _normalised<ushort, 4, 65535>>;
template <class T> using rgba16snorm = _pixel<T, _normalised<short, 4, 32767>>;
template <class T> using srgba8unorm = _pixel<T, _srgb_pixel>;
template <class T> using rgb10a2 = _pixel<T, _10a2_pixel>;
template <class T> using rg11b10f = _pixel<T, _11_11_10_pixel>;
template <class T> using rgb9e5 = _pixel<T, _9e5_pixel>;

} // namespace metal
