// Textures (Metal Shading Language 3.1, 2.9 and 6.12): a handle that the wrapper of each entry
// point makes a constant. A class derives from a chain of parts, one for each ability of its shape
// and access, so that other members do not exist. The parts are templates over a shape S
// (texture_shapes.h) and a texel K.
#pragma once

#include "compute.h"
#include "texture_shapes.h"

namespace metal {

// Texels of T, converted from the device's vectors of float, int or uint.
template <class T> struct _color {
    typedef vec<T, 4> Texel;
    typedef vec<T, 4> Gathered;
    typedef conditional_t<
        is_floating_point_v<T>, float,
        conditional_t<sizeof(T) == 8, ulong, conditional_t<is_signed_v<T>, int, uint>>>
        Component;
    template <class V> static MSL_INLINE Texel texel(V v) {
        return __builtin_convertvector(v, Texel);
    }
    template <class V> static MSL_INLINE Gathered gathered(V v) { return texel(v); }
    static MSL_INLINE auto stored(Texel v) {
        return __builtin_convertvector(v, vec<Component, 4>);
    }
};
// Texels of one component, a depth.
template <class T> struct _depth {
    typedef T Texel;
    typedef vec<T, 4> Gathered;
    typedef float Component;
    static MSL_INLINE Texel texel(float4 v) { return v.x; }
    static MSL_INLINE Gathered gathered(float4 v) { return v; }
};
template <class S, class K> using _calls = typename S::template Calls<typename K::Component>;

// The handle, and sizes.
template <class S> struct _width {
    uint handle;
    /** The width in pixels. */
    MSL_INLINE uint get_width(uint lod = 0) const { return S::width(handle, int(lod)); }
    /** The number of levels of detail. */
    MSL_INLINE uint get_num_mip_levels() const { return S::levels(handle); }
};
template <class S> struct _width_and_height : _width<S> {
    /** The height in pixels. */
    MSL_INLINE uint get_height(uint lod = 0) const { return S::height(this->handle, int(lod)); }
};
template <class S> struct _three_sizes : _width_and_height<S> {
    /** The depth in pixels. */
    MSL_INLINE uint get_depth(uint lod = 0) const { return S::depth(this->handle, int(lod)); }
};
template <class S, class Base> struct _array_size : Base {
    /** The number of layers. */
    MSL_INLINE uint get_array_size() const { return S::layers(this->handle); }
};
template <class S> struct _sample_sizes {
    uint handle;
    MSL_INLINE uint get_width() const { return S::width(handle, 0); }
    MSL_INLINE uint get_height() const { return S::height(handle, 0); }
    MSL_INLINE uint get_num_samples() const { return S::samples(handle); }
};
template <class S> struct _only_width {
    uint handle;
    MSL_INLINE uint get_width() const { return S::width(handle, 0); }
};

// Access to single texels. `Indices...` are the face and the layer, if the shape has them.
#define MSL_READS(parameters, arguments)                                                           \
    /** The texel at a pixel position. */                                                          \
    MSL_INLINE typename K::Texel read(typename S::TexelAt at parameters, uint lod = 0) const {     \
        return K::texel(_calls<S, K>::read(this->handle, S::place(at arguments), int(lod)));       \
    }                                                                                              \
    MSL_INLINE typename K::Texel read(typename S::ShortTexelAt at parameters, uint lod = 0)        \
        const {                                                                                    \
        return read(_unshort(at) arguments, lod);                                                  \
    }
#define MSL_WRITES(parameters, arguments)                                                          \
    /** Replaces the texel at a pixel position. */                                                 \
    MSL_INLINE void write(typename K::Texel color, typename S::TexelAt at parameters,              \
                          uint lod = 0) const {                                                    \
        _calls<S, K>::write(this->handle, S::place(at arguments), K::stored(color), int(lod));     \
    }                                                                                              \
    MSL_INLINE void write(typename K::Texel color, typename S::ShortTexelAt at parameters,         \
                          uint lod = 0) const {                                                    \
        write(color, _unshort(at) arguments, lod);                                                 \
    }
#define MSL_COMMA ,
MSL_INLINE uint2 _unshort(ushort2 at) { return __builtin_convertvector(at, uint2); }
MSL_INLINE uint3 _unshort(ushort3 at) { return __builtin_convertvector(at, uint3); }
uint _unshort(_no_place);

template <class S, class K, class Base> struct _read : Base {
    MSL_READS(, )
};
template <class S, class K, class Base> struct _read_layer : Base {
    MSL_READS(MSL_COMMA uint layer, MSL_COMMA layer)
};
template <class S, class K, class Base> struct _read_face_and_layer : Base {
    MSL_READS(MSL_COMMA uint face MSL_COMMA uint layer, MSL_COMMA face MSL_COMMA layer)
};
template <class S, class K, class Base> struct _write : Base {
    MSL_WRITES(, )
};
template <class S, class K, class Base> struct _write_layer : Base {
    MSL_WRITES(MSL_COMMA uint layer, MSL_COMMA layer)
};
template <class S, class K, class Base> struct _write_face_and_layer : Base {
    MSL_WRITES(MSL_COMMA uint face MSL_COMMA uint layer, MSL_COMMA face MSL_COMMA layer)
};
#undef MSL_READS
#undef MSL_WRITES

// A texture over a buffer has no levels.
template <class S, class K, class Base> struct _read_buffer : Base {
    MSL_INLINE typename K::Texel read(uint at) const {
        return K::texel(_calls<S, K>::read(this->handle, at, 0));
    }
};
template <class S, class K, class Base> struct _write_buffer : Base {
    MSL_INLINE void write(typename K::Texel color, uint at) const {
        _calls<S, K>::write(this->handle, at, K::stored(color), 0);
    }
};

// Atomic operations on the first component of a texel; the others are 0. Only int, uint and ulong
// have them, and ulong the smallest and the largest alone.
template <class S, class K> using _changes = typename S::template Changes<typename K::Component>;
template <class K> MSL_INLINE typename K::Texel _first(typename K::Component value) {
    return {value, 0, 0, 0};
}
#define MSL_ATOMIC_CHANGE(name, At)                                                                \
    MSL_INLINE typename K::Texel atomic_##name(typename S::At at MSL_LAYER_PARAMETER,              \
                                               typename K::Texel value) const {                    \
        return _first<K>(_changes<S, K>::name(this->handle, S::place(_unshort(at) MSL_LAYER),      \
                                              value.x));                                           \
    }
#define MSL_ATOMICS(At)                                                                            \
    MSL_INLINE typename K::Texel atomic_load(typename S::At at MSL_LAYER_PARAMETER) const {        \
        return _first<K>(                                                                          \
            _changes<S, K>::load(this->handle, S::place(_unshort(at) MSL_LAYER)));                 \
    }                                                                                              \
    MSL_INLINE void atomic_store(typename K::Texel value, typename S::At at MSL_LAYER_PARAMETER) const {\
        _changes<S, K>::store(this->handle, S::place(_unshort(at) MSL_LAYER), value.x);            \
    }                                                                                              \
    MSL_INLINE bool atomic_compare_exchange_weak(typename S::At at MSL_LAYER_PARAMETER,            \
                                                 typename K::Texel* expected,                      \
                                                 typename K::Texel desired) const {                \
        const typename K::Component wanted = expected->x;                                          \
        const typename K::Component before = _changes<S, K>::compare_exchange(                     \
            this->handle, S::place(_unshort(at) MSL_LAYER), wanted, desired.x);                    \
        *expected = _first<K>(before);                                                             \
        return before == wanted;                                                                   \
    }                                                                                              \
    MSL_ATOMIC_CHANGE(exchange, At)                                                                \
    MSL_ATOMIC_CHANGE(fetch_add, At)                                                               \
    MSL_ATOMIC_CHANGE(fetch_sub, At)                                                               \
    MSL_ATOMIC_CHANGE(fetch_and, At)                                                               \
    MSL_ATOMIC_CHANGE(fetch_or, At)                                                                \
    MSL_ATOMIC_CHANGE(fetch_xor, At)                                                               \
    MSL_ATOMIC_CHANGE(fetch_min, At)                                                               \
    MSL_ATOMIC_CHANGE(fetch_max, At)
#define MSL_WIDE_ATOMICS(At)                                                                       \
    MSL_INLINE void atomic_min(typename S::At at MSL_LAYER_PARAMETER, typename K::Texel value) const {\
        _changes<S, K>::fetch_min(this->handle, S::place(_unshort(at) MSL_LAYER), value.x);        \
    }                                                                                              \
    MSL_INLINE void atomic_max(typename S::At at MSL_LAYER_PARAMETER, typename K::Texel value) const {\
        _changes<S, K>::fetch_max(this->handle, S::place(_unshort(at) MSL_LAYER), value.x);        \
    }
MSL_INLINE uint _unshort(uint at) { return at; }
MSL_INLINE uint2 _unshort(uint2 at) { return at; }
MSL_INLINE uint3 _unshort(uint3 at) { return at; }

#define MSL_LAYER_PARAMETER
#define MSL_LAYER
template <class S, class K, class Base> struct _atomic : Base {
    MSL_ATOMICS(TexelAt)
    MSL_ATOMICS(ShortTexelAt)
};
template <class S, class K, class Base> struct _wide_atomic : Base {
    MSL_WIDE_ATOMICS(TexelAt)
    MSL_WIDE_ATOMICS(ShortTexelAt)
};
#undef MSL_LAYER_PARAMETER
#undef MSL_LAYER
#define MSL_LAYER_PARAMETER , uint layer
#define MSL_LAYER , layer
template <class S, class K, class Base> struct _atomic_layer : Base {
    MSL_ATOMICS(TexelAt)
    MSL_ATOMICS(ShortTexelAt)
};
template <class S, class K, class Base> struct _wide_atomic_layer : Base {
    MSL_WIDE_ATOMICS(TexelAt)
    MSL_WIDE_ATOMICS(ShortTexelAt)
};
#undef MSL_LAYER_PARAMETER
#undef MSL_LAYER
#undef MSL_ATOMIC_CHANGE
#undef MSL_ATOMICS
#undef MSL_WIDE_ATOMICS

template <class K, class Atomic, class Wide, class Base>
using _by_component =
    conditional_t<is_same_v<typename K::Texel, int4> || is_same_v<typename K::Texel, uint4>, Atomic,
                  conditional_t<is_same_v<typename K::Component, ulong>, Wide, Base>>;
template <class S, class K, class B>
using _atomics = _by_component<K, _atomic<S, K, B>, _wide_atomic<S, K, B>, B>;
template <class S, class K, class B>
using _layer_atomics = _by_component<K, _atomic_layer<S, K, B>, _wide_atomic_layer<S, K, B>, B>;
template <class S, class K, class B> using _no_atomics = B;

template <class Base> struct _fenced : Base {
    /** Makes this thread's writes to the texture visible to its later reads. */
    MSL_INLINE void fence() const {
        _fence(thread_scope_thread, int(mem_flags::mem_texture));
    }
};

// Sampling with every option for the level. Not all devices take a minimum level as an operand, so
// the level is computed here and clamped. `parameters` are the coordinates and the options.
#define MSL_SAMPLES(name, Result, result, call, parameters, arguments)                             \
    MSL_INLINE Result name(sampler s, typename S::At at parameters,                                \
                           typename S::Offset offset = typename S::Offset(0)) const {              \
        return result(call(this->handle, s.bits, arguments, offset));                              \
    }                                                                                              \
    MSL_INLINE Result name(sampler s, typename S::At at parameters, bias b,                        \
                           typename S::Offset offset = typename S::Offset(0)) const {              \
        return result(call##_bias(this->handle, s.bits, arguments, b.value, offset));              \
    }                                                                                              \
    MSL_INLINE Result name(sampler s, typename S::At at parameters, level l,                       \
                           typename S::Offset offset = typename S::Offset(0)) const {              \
        return result(call##_level(this->handle, s.bits, arguments, l.lod, offset));               \
    }                                                                                              \
    MSL_INLINE Result name(sampler s, typename S::At at parameters, typename S::Gradient g,        \
                           typename S::Offset offset = typename S::Offset(0)) const {              \
        return result(call##_grad(this->handle, s.bits, arguments, g.dPdx, g.dPdy, offset));       \
    }                                                                                              \
    MSL_INLINE Result name(sampler s, typename S::At at parameters, min_lod_clamp least,           \
                           typename S::Offset offset = typename S::Offset(0)) const {              \
        const float lod = _at_least(S::lod(this->handle, s.bits, at).y, least);                    \
        return result(call##_level(this->handle, s.bits, arguments, lod, offset));                 \
    }                                                                                              \
    MSL_INLINE Result name(sampler s, typename S::At at parameters, bias b, min_lod_clamp least,   \
                           typename S::Offset offset = typename S::Offset(0)) const {              \
        const float lod = _at_least(S::lod(this->handle, s.bits, at).y + b.value, least);          \
        return result(call##_level(this->handle, s.bits, arguments, lod, offset));                 \
    }                                                                                              \
    MSL_INLINE Result name(sampler s, typename S::At at parameters, typename S::Gradient g,        \
                           min_lod_clamp least,                                                    \
                           typename S::Offset offset = typename S::Offset(0)) const {              \
        const float lod = _at_least(S::gradient_lod(this->handle, at, g), least);                  \
        return result(call##_level(this->handle, s.bits, arguments, lod, offset));                 \
    }
MSL_INLINE float _at_least(float lod, min_lod_clamp least) {
    return lod > least.lod ? lod : least.lod;
}

template <class S, class Base> struct _levels_of_detail : Base {
    /** The level of detail that a sample at the position takes. */
    MSL_INLINE float calculate_clamped_lod(sampler s, typename S::At at) const {
        // Some drivers limit it to the sampler's levels only.
        const float lod = S::lod(this->handle, s.bits, at).x, last = float(S::levels(this->handle) - 1);
        return lod < last ? lod : last;
    }
    /** The level of detail of a sample before it is limited to the texture's levels. */
    MSL_INLINE float calculate_unclamped_lod(sampler s, typename S::At at) const {
        return S::lod(this->handle, s.bits, at).y;
    }
};
template <class S, class K, class Base> struct _sample : _levels_of_detail<S, Base> {
    MSL_SAMPLES(sample, typename K::Texel, K::texel, _calls<S MSL_COMMA K>::sample, , S::spot(at))
};
template <class S, class K, class Base> struct _sample_layer : _levels_of_detail<S, Base> {
    MSL_SAMPLES(sample, typename K::Texel, K::texel, _calls<S MSL_COMMA K>::sample,
                MSL_COMMA uint layer, S::spot(at MSL_COMMA layer))
};
template <class S, class K, class Base> struct _compare : Base {
    /** The share of the filtered texels, 0 to 1, that pass the comparison with the reference. */
    MSL_SAMPLES(sample_compare, typename K::Texel, , S::sample_compare, MSL_COMMA float reference,
                S::spot(at) MSL_COMMA reference)
    /** The comparison of the four texels around a position with the reference. */
    MSL_INLINE float4 gather_compare(sampler s, typename S::At at, float reference,
                                     typename S::Offset offset = typename S::Offset(0)) const {
        return S::gather_compare(this->handle, s.bits, S::spot(at), reference, offset);
    }
};
template <class S, class K, class Base> struct _compare_layer : Base {
    MSL_SAMPLES(sample_compare, typename K::Texel, , S::sample_compare,
                MSL_COMMA uint layer MSL_COMMA float reference,
                S::spot(at MSL_COMMA layer) MSL_COMMA reference)
    MSL_INLINE float4 gather_compare(sampler s, typename S::At at, uint layer, float reference,
                                     typename S::Offset offset = typename S::Offset(0)) const {
        return S::gather_compare(this->handle, s.bits, S::spot(at, layer), reference, offset);
    }
};
#undef MSL_SAMPLES

// One-dimensional textures have one level.
template <class S, class K, class Base> struct _sample_1d : Base {
    /** The filtered colour at a position: a uint is the layer, and bias, level or gradient
        chooses the level of detail. */
    MSL_INLINE typename K::Texel sample(sampler s, float at) const {
        return K::texel(_calls<S, K>::sample(this->handle, s.bits, S::spot(at), 0));
    }
};
template <class S, class K, class Base> struct _sample_1d_layer : Base {
    MSL_INLINE typename K::Texel sample(sampler s, float at, uint layer) const {
        return K::texel(_calls<S, K>::sample(this->handle, s.bits, S::spot(at, layer), 0));
    }
};

// One component of the four texels around a position. Cubes take no offset, depth textures no
// choice of component.
#define MSL_GATHER(parameters, arguments, offset, component)                                       \
    /** One component of the four texels around a position. */                                     \
    MSL_INLINE typename K::Gathered gather(sampler s, typename S::At at parameters) const {        \
        return K::gathered(                                                                        \
            _calls<S, K>::gather(this->handle, s.bits, S::spot(at arguments), offset, component)); \
    }
template <class S, class K, class Base> struct _gather : Base {
    MSL_GATHER(MSL_COMMA int2 offset = int2(0) MSL_COMMA component c = component::x, , offset,
               int(c))
};
template <class S, class K, class Base> struct _gather_layer : Base {
    MSL_GATHER(MSL_COMMA uint layer MSL_COMMA int2 offset = int2(0) MSL_COMMA component c =
                   component::x,
               MSL_COMMA layer, offset, int(c))
};
template <class S, class K, class Base> struct _gather_cube : Base {
    MSL_GATHER(MSL_COMMA component c = component::x, , int3(0), int(c))
};
template <class S, class K, class Base> struct _gather_cube_layer : Base {
    MSL_GATHER(MSL_COMMA uint layer MSL_COMMA component c = component::x, MSL_COMMA layer, int3(0),
               int(c))
};
template <class S, class K, class Base> struct _gather_depth : Base {
    MSL_GATHER(MSL_COMMA typename S::Offset offset = typename S::Offset(0), , offset, 0)
};
template <class S, class K, class Base> struct _gather_depth_layer : Base {
    MSL_GATHER(MSL_COMMA uint layer MSL_COMMA typename S::Offset offset = typename S::Offset(0),
               MSL_COMMA layer, offset, 0)
};
#undef MSL_GATHER
#undef MSL_COMMA

// A texel, and whether the memory that it came from was there. The platform's textures have all of
// their memory from the start.
template <class T> struct sparse_color {
    constexpr sparse_color(T value, bool isResident) : texel(value), isResident(isResident) {}
    constexpr bool resident() const { return isResident; }
    constexpr T value() const { return texel; }

  private:
    T texel;
    bool isResident;
};
template <class T> MSL_INLINE sparse_color<T> _resident(T texel) { return {texel, true}; }

#define MSL_SPARSE(name)                                                                           \
    template <class... Arguments> MSL_INLINE auto sparse_##name(Arguments... arguments) const {    \
        return _resident(this->name(arguments...));                                                \
    }
template <class Base> struct _sparse_reads : Base {
    MSL_SPARSE(read)
};
template <class Base> struct _sparse_samples : _sparse_reads<Base> {
    MSL_SPARSE(sample)
    MSL_SPARSE(gather)
};
template <class Base> struct _sparse_volume : _sparse_reads<Base> {
    MSL_SPARSE(sample)
};
template <class Base> struct _sparse_depths : _sparse_samples<Base> {
    MSL_SPARSE(sample_compare)
    MSL_SPARSE(gather_compare)
};
template <class Base> using _not_sparse = Base;
#undef MSL_SPARSE

// The members for each access. A sampled texture also has the members of a read one.
template <access a, class Sampled, class Read, class Written, class Both>
using _by_access =
    conditional_t<a == access::sample, Sampled,
                  conditional_t<a == access::read, Read,
                                conditional_t<a == access::write, Written, _fenced<Both>>>>;

template <class T> inline constexpr bool is_component =
    is_same_v<T, half> || is_same_v<T, float> || is_same_v<T, short> || is_same_v<T, ushort> ||
    is_same_v<T, int> || is_same_v<T, uint>;
#define MSL_COMPONENT                                                                              \
    static_assert(is_component<T>,                                                                 \
                  "the component type of a texture is half, float, short, ushort, int or uint");
// ulong has atomic operations alone.
#define MSL_ATOMIC_COMPONENT                                                                       \
    static_assert(is_component<T> || (is_same_v<T, ulong> && a == access::read_write),             \
                  "the component type of a texture is half, float, short, ushort, int or uint");

// The name, the shape, and the parts for sizes, sampling, reading, writing, atomic operations and
// sparse textures, which are sampled or read.
#define MSL_TEXTURE(name, S, Sizes, Sampled, Read, Write, Atomics, SparseSampled, SparseRead)      \
    template <class T, access a = access::sample, class = void>                                    \
    struct name                                                                                    \
        : _by_access<a, SparseSampled<Sampled<S, _color<T>, Read<S, _color<T>, Sizes>>>,           \
                     SparseRead<Read<S, _color<T>, Sizes>>, Write<S, _color<T>, Sizes>,            \
                     Atomics<S, _color<T>, Write<S, _color<T>, Read<S, _color<T>, Sizes>>>> {      \
        MSL_ATOMIC_COMPONENT                                                                       \
    };
#define MSL_ARRAY_SIZE(S, Sizes) _array_size<S, Sizes<S>>

template <class S, class K, class B> using _samples_2d = _gather<S, K, _sample<S, K, B>>;
template <class S, class K, class B>
using _samples_2d_array = _gather_layer<S, K, _sample_layer<S, K, B>>;
template <class S, class K, class B> using _samples_cube = _gather_cube<S, K, _sample<S, K, B>>;
template <class S, class K, class B>
using _samples_cube_array = _gather_cube_layer<S, K, _sample_layer<S, K, B>>;

typedef _array_size<_shape_1d_array, _width<_shape_1d_array>> _sizes_1d_array;
typedef _array_size<_shape_2d_array, _width_and_height<_shape_2d_array>> _sizes_2d_array;
typedef _array_size<_shape_cube_array, _width_and_height<_shape_cube_array>> _sizes_cube_array;
typedef _array_size<_shape_2d_ms_array, _sample_sizes<_shape_2d_ms_array>> _sizes_2d_ms_array;

MSL_TEXTURE(texture1d, _shape_1d, _width<_shape_1d>, _sample_1d, _read, _write, _atomics,
            _not_sparse, _not_sparse)
MSL_TEXTURE(texture1d_array, _shape_1d_array, _sizes_1d_array, _sample_1d_layer, _read_layer,
            _write_layer, _layer_atomics, _not_sparse, _not_sparse)
MSL_TEXTURE(texture2d, _shape_2d, _width_and_height<_shape_2d>, _samples_2d, _read, _write,
            _atomics, _sparse_samples, _sparse_reads)
MSL_TEXTURE(texture2d_array, _shape_2d_array, _sizes_2d_array, _samples_2d_array, _read_layer,
            _write_layer, _layer_atomics, _sparse_samples, _sparse_reads)
MSL_TEXTURE(texture3d, _shape_3d, _three_sizes<_shape_3d>, _sample, _read, _write, _atomics,
            _sparse_volume, _sparse_reads)
MSL_TEXTURE(texturecube, _shape_cube, _width_and_height<_shape_cube>, _samples_cube, _read_layer,
            _write_layer, _no_atomics, _sparse_samples, _sparse_reads)
MSL_TEXTURE(texturecube_array, _shape_cube_array, _sizes_cube_array, _samples_cube_array,
            _read_face_and_layer, _write_face_and_layer, _no_atomics, _sparse_samples,
            _sparse_reads)
#undef MSL_TEXTURE
#undef MSL_ARRAY_SIZE

template <class T, access a = access::read>
struct texture_buffer
    : _by_access<a, _only_width<_shape_buffer>,
                 _read_buffer<_shape_buffer, _color<T>, _only_width<_shape_buffer>>,
                 _write_buffer<_shape_buffer, _color<T>, _only_width<_shape_buffer>>,
                 _atomics<_shape_buffer, _color<T>,
                          _write_buffer<_shape_buffer, _color<T>,
                                        _read_buffer<_shape_buffer, _color<T>,
                                                     _only_width<_shape_buffer>>>>> {
    MSL_ATOMIC_COMPONENT
    static_assert(a != access::sample, "the access of a texture_buffer is read, write or read_write");
};

// The sample takes the place of the level.
template <class T, access a = access::read>
struct texture2d_ms : _sparse_reads<_read<_shape_2d_ms, _color<T>, _sample_sizes<_shape_2d_ms>>> {
    MSL_COMPONENT
    static_assert(a == access::read, "a multisampled texture's access is read");
};
template <class T, access a = access::read>
struct texture2d_ms_array
    : _sparse_reads<_read_layer<_shape_2d_ms_array, _color<T>, _sizes_2d_ms_array>> {
    MSL_COMPONENT
    static_assert(a == access::read, "a multisampled texture's access is read");
};

#define MSL_DEPTH(name, S, Sizes, Gather, Compare, Sample, Read)                                   \
    template <class T, access a = access::sample, class = void>                                    \
    struct name                                                                                    \
        : conditional_t<                                                                           \
              a == access::sample,                                                                 \
              _sparse_depths<                                                                      \
                  Gather<S, _depth<T>, Compare<S, _depth<T>,                                       \
                                               Sample<S, _depth<T>, Read<S, _depth<T>, Sizes>>>>>, \
              _sparse_reads<Read<S, _depth<T>, Sizes>>> {                                                     \
        static_assert(is_same_v<T, float>, "the component type of a depth texture is float");      \
        static_assert(a == access::sample || a == access::read,                                    \
                      "a depth texture's access is sample or read");                               \
    };
MSL_DEPTH(depth2d, _shape_2d, _width_and_height<_shape_2d>, _gather_depth, _compare, _sample, _read)
MSL_DEPTH(depth2d_array, _shape_2d_array, _sizes_2d_array, _gather_depth_layer, _compare_layer,
          _sample_layer, _read_layer)
MSL_DEPTH(depthcube, _shape_cube, _width_and_height<_shape_cube>, _gather_depth, _compare, _sample,
          _read_layer)
MSL_DEPTH(depthcube_array, _shape_cube_array, _sizes_cube_array, _gather_depth_layer,
          _compare_layer, _sample_layer, _read_face_and_layer)
#undef MSL_DEPTH

template <class T, access a = access::read>
struct depth2d_ms : _sparse_reads<_read<_shape_2d_ms, _depth<T>, _sample_sizes<_shape_2d_ms>>> {
    static_assert(is_same_v<T, float>, "the component type of a depth texture is float");
    static_assert(a == access::read, "a multisampled texture's access is read");
};
template <class T, access a = access::read>
struct depth2d_ms_array
    : _sparse_reads<_read_layer<_shape_2d_ms_array, _depth<T>, _sizes_2d_ms_array>> {
    static_assert(is_same_v<T, float>, "the component type of a depth texture is float");
    static_assert(a == access::read, "a multisampled texture's access is read");
};
#undef MSL_COMPONENT
#undef MSL_ATOMIC_COMPONENT

// Instantiates the common types here, once, rather than in every program.
template <class T> MSL_INLINE void _texture_used(texture2d<T> t, sampler s) {
    texture2d<T> copy = t;
    copy = t;
    copy.sample(s, float2(0), bias(0));
    t.sample(s, float2(0), level(0));
    t.sample(s, float2(0));
    t.read(uint2(0));
    t.read(ushort2(0));
    t.gather(s, float2(0));
    t.get_width() + t.get_height() + t.get_num_mip_levels();
}
inline void _textures_used(texture2d<float> a, texture2d<half> b, sampler s) {
    _texture_used(a, s);
    _texture_used(b, s);
}

} // namespace metal
