// Textures (Metal Shading Language 3.1, 2.9 and 6.12): a handle that the wrapper of each entry
// point makes a constant. What is done with them are built-in calls that the SPIR-V writer knows by
// their symbols.
#pragma once

#include "construct.h"
#include "samplers.h"

namespace metal {

struct bias {
    float value;
    constexpr explicit bias(float value) : value(value) {}
};
struct level {
    float value;
    constexpr explicit level(float value) : value(value) {}
};
struct gradient2d {
    float2 x, y;
    constexpr gradient2d(float2 x, float2 y) : x(x), y(y) {}
};
enum class component { x, y, z, w };

// The built-in calls, by what a texel's components are. Those that take their level from
// neighbouring invocations may not be moved across branches.
template <class C> struct _image;
#define MSL_IMAGE(C, V, suffix)                                                                    \
    template <> struct _image<C> {                                                                  \
        typedef V Texel;                                                                           \
        __attribute__((const, convergent)) static V sample(uint, ulong, float2, int2) asm(         \
            "msl.sample.2d." suffix);                                                              \
        __attribute__((const, convergent)) static V sample_bias(uint, ulong, float2, float,        \
                                                                int2) asm("msl.sample_bias.2d."    \
                                                                          suffix);                 \
        __attribute__((const)) static V sample_level(uint, ulong, float2, float,                   \
                                                     int2) asm("msl.sample_level.2d." suffix);     \
        __attribute__((const)) static V sample_grad(uint, ulong, float2, float2, float2,           \
                                                    int2) asm("msl.sample_grad.2d." suffix);       \
        __attribute__((const)) static V gather(uint, ulong, float2, int2,                          \
                                               int) asm("msl.gather.2d." suffix);                  \
        __attribute__((pure)) static V read(uint, uint2, int) asm("msl.read.2d." suffix);          \
        static void write(uint, uint2, V) asm("msl.write.2d." suffix);                             \
    };
MSL_IMAGE(float, float4, "f32")
MSL_IMAGE(int, int4, "s32")
MSL_IMAGE(uint, uint4, "u32")
#undef MSL_IMAGE
__attribute__((const)) uint _image_width(uint, int) asm("msl.width.2d");
__attribute__((const)) uint _image_height(uint, int) asm("msl.height.2d");
__attribute__((const)) uint _image_levels(uint, int) asm("msl.levels.2d");

// The component type that a texture of T has on the device.
template <class T>
using _image_of = _image<conditional_t<is_floating_point_v<T>, float,
                                     conditional_t<is_signed_v<T>, int, uint>>>;

template <class T, access a = access::sample> struct texture2d {
    typedef vec<T, 4> Texel;
    uint handle;

    MSL_INLINE Texel sample(sampler s, float2 at, int2 offset = int2(0)) const {
        return texel(_image_of<T>::sample(handle, s.bits, at, offset));
    }
    MSL_INLINE Texel sample(sampler s, float2 at, bias b, int2 offset = int2(0)) const {
        return texel(_image_of<T>::sample_bias(handle, s.bits, at, b.value, offset));
    }
    MSL_INLINE Texel sample(sampler s, float2 at, level l, int2 offset = int2(0)) const {
        return texel(_image_of<T>::sample_level(handle, s.bits, at, l.value, offset));
    }
    MSL_INLINE Texel sample(sampler s, float2 at, gradient2d g, int2 offset = int2(0)) const {
        return texel(_image_of<T>::sample_grad(handle, s.bits, at, g.x, g.y, offset));
    }
    MSL_INLINE Texel gather(sampler s, float2 at, int2 offset = int2(0),
                            component c = component::x) const {
        return texel(_image_of<T>::gather(handle, s.bits, at, offset, int(c)));
    }
    MSL_INLINE Texel read(uint2 at, uint lod = 0) const {
        return texel(_image_of<T>::read(handle, at, int(lod)));
    }
    MSL_INLINE Texel read(ushort2 at, ushort lod = 0) const {
        return texel(_image_of<T>::read(handle, __builtin_convertvector(at, uint2), lod));
    }
    MSL_INLINE void write(Texel value, uint2 at, uint = 0) const {
        static_assert(a == access::write || a == access::read_write,
                      "a texture is written where its access is write or read_write");
        _image_of<T>::write(handle, at,
                           __builtin_convertvector(value, typename _image_of<T>::Texel));
    }
    MSL_INLINE void write(Texel value, ushort2 at, ushort = 0) const {
        write(value, __builtin_convertvector(at, uint2));
    }
    MSL_INLINE uint get_width(uint lod = 0) const { return _image_width(handle, int(lod)); }
    MSL_INLINE uint get_height(uint lod = 0) const { return _image_height(handle, int(lod)); }
    MSL_INLINE uint get_num_mip_levels() const { return _image_levels(handle, 0); }

  private:
    static MSL_INLINE Texel texel(typename _image_of<T>::Texel v) {
        return __builtin_convertvector(v, Texel);
    }
};

} // namespace metal
