// The shapes of textures, and the built-in calls on them, which the SPIR-V writer knows by symbol.
// Coordinates end with the layer; coordinates of single texels (`Place`) end with the face or the
// layer.
#pragma once

#include "construct.h"
#include "samplers.h"

namespace metal {

struct bias {
    float value;
    constexpr explicit bias(float value) : value(value) {}
};
struct level {
    float lod;
    constexpr explicit level(float lod) : lod(lod) {}
};
struct min_lod_clamp {
    float lod;
    constexpr explicit min_lod_clamp(float lod) : lod(lod) {}
};
struct gradient2d {
    float2 dPdx, dPdy;
    constexpr gradient2d(float2 dPdx, float2 dPdy) : dPdx(dPdx), dPdy(dPdy) {}
};
struct gradient3d {
    float3 dPdx, dPdy;
    constexpr gradient3d(float3 dPdx, float3 dPdy) : dPdx(dPdx), dPdy(dPdy) {}
};
struct gradientcube {
    float3 dPdx, dPdy;
    constexpr gradientcube(float3 dPdx, float3 dPdy) : dPdx(dPdx), dPdy(dPdy) {}
};
enum class component { x, y, z, w };

// For shapes without offsets or without ushort coordinates.
struct _no_offset {
    constexpr explicit _no_offset(int) {}
    MSL_INLINE operator int3() const { return int3(0); }
    MSL_INLINE operator int() const { return 0; }
};
struct _no_place {
    operator uint() const;
};

// By the component type of texels on the device.
#define MSL_TEXEL_CALLS(shape, V, suffix, Place)                                                   \
    static V read(uint, Place, int) asm("msl.read." #shape "." suffix);                            \
    static void write(uint, Place, V, int) asm("msl.write." #shape "." suffix);
#define MSL_SAMPLE_CALLS(shape, V, suffix, Spot, Slope, Shift)                                     \
    static V sample(uint, ulong, Spot, Shift) asm("msl.sample." #shape "." suffix);                \
    static V sample_bias(uint, ulong, Spot, float, Shift) asm("msl.sample_bias." #shape            \
                                                              "." suffix);                         \
    static V sample_level(uint, ulong, Spot, float, Shift) asm("msl.sample_level." #shape          \
                                                               "." suffix);                        \
    static V sample_grad(uint, ulong, Spot, Slope, Slope, Shift) asm("msl.sample_grad." #shape     \
                                                                     "." suffix);                  \
    static V gather(uint, ulong, Spot, Shift, int) asm("msl.gather." #shape "." suffix);
#define MSL_CALLS_OF(C, V, suffix, shape, Spot, Slope, Shift, Place)                               \
    template <> struct _calls_##shape<C> {                                                         \
        typedef V Texel;                                                                           \
        MSL_TEXEL_CALLS(shape, V, suffix, Place)                                                   \
        MSL_SAMPLE_CALLS(shape, V, suffix, Spot, Slope, Shift)                                     \
    };
#define MSL_CALLS(shape, Spot, Slope, Shift, Place)                                                \
    template <class C> struct _calls_##shape {};                                                   \
    MSL_CALLS_OF(float, float4, "f32", shape, Spot, Slope, Shift, Place)                           \
    MSL_CALLS_OF(int, int4, "s32", shape, Spot, Slope, Shift, Place)                               \
    MSL_CALLS_OF(uint, uint4, "u32", shape, Spot, Slope, Shift, Place)
#define MSL_READ_CALLS_OF(C, V, suffix, shape, Place)                                              \
    template <> struct _calls_##shape<C> {                                                         \
        typedef V Texel;                                                                           \
        MSL_TEXEL_CALLS(shape, V, suffix, Place)                                                   \
    };
#define MSL_READ_CALLS(shape, Place)                                                               \
    template <class C> struct _calls_##shape {};                                                   \
    MSL_READ_CALLS_OF(float, float4, "f32", shape, Place)                                          \
    MSL_READ_CALLS_OF(int, int4, "s32", shape, Place)                                              \
    MSL_READ_CALLS_OF(uint, uint4, "u32", shape, Place)

MSL_CALLS(1d, float, float, int, uint)
MSL_CALLS(1d_array, float2, float, int, uint2)
MSL_CALLS(2d, float2, float2, int2, uint2)
MSL_CALLS(2d_array, float3, float2, int2, uint3)
MSL_CALLS(3d, float3, float3, int3, uint3)
MSL_CALLS(cube, float3, float3, int3, uint3)
MSL_CALLS(cube_array, float4, float3, int3, uint3)
MSL_READ_CALLS(2d_ms, uint2)
MSL_READ_CALLS(2d_ms_array, uint3)
MSL_READ_CALLS(buffer, uint)

// Atomic operations on single texels, by the component type of the texture.
#define MSL_CHANGE(C, suffix, shape, Place, name)                                                  \
    static C name(uint, Place, C) asm("msl.texel_" #name "." #shape "." suffix);
#define MSL_CHANGES_OF(C, suffix, shape, Place)                                                    \
    template <> struct _changes_##shape<C> {                                                       \
        static C load(uint, Place) asm("msl.texel_load." #shape "." suffix);                       \
        static void store(uint, Place, C) asm("msl.texel_store." #shape "." suffix);               \
        static C compare_exchange(uint, Place, C,                                                  \
                                  C) asm("msl.texel_compare_exchange." #shape "." suffix);         \
        MSL_CHANGE(C, suffix, shape, Place, exchange)                                              \
        MSL_CHANGE(C, suffix, shape, Place, fetch_add)                                             \
        MSL_CHANGE(C, suffix, shape, Place, fetch_sub)                                             \
        MSL_CHANGE(C, suffix, shape, Place, fetch_and)                                             \
        MSL_CHANGE(C, suffix, shape, Place, fetch_or)                                              \
        MSL_CHANGE(C, suffix, shape, Place, fetch_xor)                                             \
        MSL_CHANGE(C, suffix, shape, Place, fetch_min)                                             \
        MSL_CHANGE(C, suffix, shape, Place, fetch_max)                                             \
    };
#define MSL_CHANGES(shape, Place)                                                                  \
    template <class C> struct _changes_##shape;                                                    \
    MSL_CHANGES_OF(int, "s32", shape, Place)                                                       \
    MSL_CHANGES_OF(uint, "u32", shape, Place)                                                      \
    template <> struct _changes_##shape<ulong> {                                                   \
        MSL_CHANGE(ulong, "u64", shape, Place, fetch_min)                                          \
        MSL_CHANGE(ulong, "u64", shape, Place, fetch_max)                                          \
    };
MSL_CHANGES(1d, uint)
MSL_CHANGES(1d_array, uint2)
MSL_CHANGES(2d, uint2)
MSL_CHANGES(2d_array, uint3)
MSL_CHANGES(3d, uint3)
MSL_CHANGES(buffer, uint)

#undef MSL_CHANGE
#undef MSL_CHANGES_OF
#undef MSL_CHANGES
#undef MSL_TEXEL_CALLS
#undef MSL_SAMPLE_CALLS
#undef MSL_CALLS_OF
#undef MSL_CALLS
#undef MSL_READ_CALLS_OF
#undef MSL_READ_CALLS

// The calls that do not depend on the component: sizes of all shapes, levels of detail and
// comparisons of sampled shapes. `lod` takes no layer; it gives the accessed level and the computed
// level.
#define MSL_SIZES(shape)                                                                           \
    template <class C> using Calls = _calls_##shape<C>;                                            \
    static uint width(uint, int) asm("msl.width." #shape);                                         \
    static uint height(uint, int) asm("msl.height." #shape);                                       \
    static uint depth(uint, int) asm("msl.depth." #shape);                                         \
    static uint layers(uint) asm("msl.layers." #shape);                                            \
    static uint levels(uint) asm("msl.levels." #shape);                                            \
    static uint samples(uint) asm("msl.samples." #shape);
#define MSL_ATOMIC(shape) template <class C> using Changes = _changes_##shape<C>;
#define MSL_SAMPLING(shape, Spot, Slope, Shift)                                                    \
    static float2 lod(uint, ulong, At) asm("msl.lod." #shape);                                     \
    static float sample_compare(uint, ulong, Spot, float, Shift) asm("msl.sample_compare." #shape);\
    static float sample_compare_bias(uint, ulong, Spot, float, float,                              \
                                     Shift) asm("msl.sample_compare_bias." #shape);                \
    static float sample_compare_level(uint, ulong, Spot, float, float,                             \
                                      Shift) asm("msl.sample_compare_level." #shape);              \
    static float sample_compare_grad(uint, ulong, Spot, float, Slope, Slope,                       \
                                     Shift) asm("msl.sample_compare_grad." #shape);                \
    static float4 gather_compare(uint, ulong, Spot, float, Shift) asm("msl.gather_compare." #shape);

// The level of detail for gradients in texels (Vulkan 1.3, 16.5.6).
MSL_INLINE float _gradient_lod(float3 dx, float3 dy) {
    const float x = dx.x * dx.x + dx.y * dx.y + dx.z * dx.z;
    const float y = dy.x * dy.x + dy.y * dy.y + dy.z * dy.z;
    return 0.5f * __builtin_elementwise_log2(x > y ? x : y);
}
MSL_INLINE float _gradient_lod(uint width, uint height, gradient2d g) {
    const float x = float(width), y = float(height);
    return _gradient_lod(float3{g.dPdx.x * x, g.dPdx.y * y, 0},
                         float3{g.dPdy.x * x, g.dPdy.y * y, 0});
}

// The gradient of a direction's position on its face, in texels: the largest component becomes 1,
// and a face is 2 wide (Vulkan 1.3, 16.5.4).
MSL_INLINE float3 _on_face(float3 at, float3 change, float size) {
    const float3 far = __builtin_elementwise_abs(at);
    const float2 larger = far.x >= far.y ? float2{far.x, change.x * (at.x < 0 ? -1.0f : 1.0f)}
                                         : float2{far.y, change.y * (at.y < 0 ? -1.0f : 1.0f)};
    const float2 largest =
        larger.x >= far.z ? larger : float2{far.z, change.z * (at.z < 0 ? -1.0f : 1.0f)};
    return (change - at * (largest.y / largest.x)) * (0.5f * size / largest.x);
}
MSL_INLINE float _gradient_lod(uint width, float3 at, gradientcube g) {
    return _gradient_lod(_on_face(at, g.dPdx, float(width)), _on_face(at, g.dPdy, float(width)));
}

struct _shape_1d {
    typedef float At;
    typedef uint TexelAt;
    typedef _no_place ShortTexelAt;
    typedef _no_offset Offset;
    MSL_SIZES(1d)
    MSL_ATOMIC(1d)
    static MSL_INLINE uint place(uint at) { return at; }
    static MSL_INLINE float spot(float at) { return at; }
};
struct _shape_1d_array {
    typedef float At;
    typedef uint TexelAt;
    typedef _no_place ShortTexelAt;
    typedef _no_offset Offset;
    MSL_SIZES(1d_array)
    MSL_ATOMIC(1d_array)
    static MSL_INLINE uint2 place(uint at, uint layer) { return uint2{at, layer}; }
    static MSL_INLINE float2 spot(float at, uint layer) { return float2{at, float(layer)}; }
};
struct _shape_2d {
    typedef float2 At;
    typedef uint2 TexelAt;
    typedef ushort2 ShortTexelAt;
    typedef int2 Offset;
    typedef gradient2d Gradient;
    MSL_SIZES(2d)
    MSL_ATOMIC(2d)
    MSL_SAMPLING(2d, float2, float2, int2)
    static MSL_INLINE uint2 place(uint2 at) { return at; }
    static MSL_INLINE float2 spot(float2 at) { return at; }
    static MSL_INLINE float gradient_lod(uint handle, float2, gradient2d g) {
        return _gradient_lod(width(handle, 0), height(handle, 0), g);
    }
};
struct _shape_2d_array {
    typedef float2 At;
    typedef uint2 TexelAt;
    typedef ushort2 ShortTexelAt;
    typedef int2 Offset;
    typedef gradient2d Gradient;
    MSL_SIZES(2d_array)
    MSL_ATOMIC(2d_array)
    MSL_SAMPLING(2d_array, float3, float2, int2)
    static MSL_INLINE uint3 place(uint2 at, uint layer) { return uint3{at.x, at.y, layer}; }
    static MSL_INLINE float3 spot(float2 at, uint layer) {
        return float3{at.x, at.y, float(layer)};
    }
    static MSL_INLINE float gradient_lod(uint handle, float2, gradient2d g) {
        return _gradient_lod(width(handle, 0), height(handle, 0), g);
    }
};
struct _shape_3d {
    typedef float3 At;
    typedef uint3 TexelAt;
    typedef ushort3 ShortTexelAt;
    typedef int3 Offset;
    typedef gradient3d Gradient;
    MSL_SIZES(3d)
    MSL_ATOMIC(3d)
    MSL_SAMPLING(3d, float3, float3, int3)
    static MSL_INLINE uint3 place(uint3 at) { return at; }
    static MSL_INLINE float3 spot(float3 at) { return at; }
    static MSL_INLINE float gradient_lod(uint handle, float3, gradient3d g) {
        const float3 size = {float(width(handle, 0)), float(height(handle, 0)),
                             float(depth(handle, 0))};
        return _gradient_lod(g.dPdx * size, g.dPdy * size);
    }
};

struct _shape_cube {
    typedef float3 At;
    typedef uint2 TexelAt;
    typedef ushort2 ShortTexelAt;
    typedef _no_offset Offset;
    typedef gradientcube Gradient;
    MSL_SIZES(cube)
    MSL_SAMPLING(cube, float3, float3, int3)
    static MSL_INLINE uint3 place(uint2 at, uint face) { return uint3{at.x, at.y, face}; }
    static MSL_INLINE float3 spot(float3 at) { return at; }
    static MSL_INLINE float gradient_lod(uint handle, float3 at, gradientcube g) {
        return _gradient_lod(width(handle, 0), at, g);
    }
};
struct _shape_cube_array {
    typedef float3 At;
    typedef uint2 TexelAt;
    typedef ushort2 ShortTexelAt;
    typedef _no_offset Offset;
    typedef gradientcube Gradient;
    MSL_SIZES(cube_array)
    MSL_SAMPLING(cube_array, float4, float3, int3)
    static MSL_INLINE uint3 place(uint2 at, uint face, uint layer) {
        // An invalid face is in no layer.
        return uint3{at.x, at.y, face < 6 ? layer * 6 + face : 0xffffffff};
    }
    static MSL_INLINE float4 spot(float3 at, uint layer) {
        return float4{at.x, at.y, at.z, float(layer)};
    }
    static MSL_INLINE float gradient_lod(uint handle, float3 at, gradientcube g) {
        return _gradient_lod(width(handle, 0), at, g);
    }
};
struct _shape_2d_ms {
    typedef uint2 TexelAt;
    typedef ushort2 ShortTexelAt;
    MSL_SIZES(2d_ms)
    static MSL_INLINE uint2 place(uint2 at) { return at; }
};
struct _shape_2d_ms_array {
    typedef uint2 TexelAt;
    typedef ushort2 ShortTexelAt;
    MSL_SIZES(2d_ms_array)
    static MSL_INLINE uint3 place(uint2 at, uint layer) { return uint3{at.x, at.y, layer}; }
};
struct _shape_buffer {
    typedef uint TexelAt;
    typedef _no_place ShortTexelAt;
    MSL_SIZES(buffer)
    MSL_ATOMIC(buffer)
    static MSL_INLINE uint place(uint at) { return at; }
};

#undef MSL_SIZES
#undef MSL_ATOMIC
#undef MSL_SAMPLING

} // namespace metal
