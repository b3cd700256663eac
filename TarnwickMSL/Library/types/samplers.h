// sampler (Metal Shading Language 3.1, 2.10): 64 bits, packed as SamplerBits.h says.
#pragma once

#include "scalars.h"

namespace metal {

enum class coord { normalized, pixel };
enum class address { clamp_to_zero, clamp_to_edge, repeat, mirrored_repeat, clamp_to_border };
enum class s_address { clamp_to_zero, clamp_to_edge, repeat, mirrored_repeat, clamp_to_border };
enum class t_address { clamp_to_zero, clamp_to_edge, repeat, mirrored_repeat, clamp_to_border };
enum class r_address { clamp_to_zero, clamp_to_edge, repeat, mirrored_repeat, clamp_to_border };
enum class filter { nearest, linear };
enum class mag_filter { nearest, linear };
enum class min_filter { nearest, linear };
enum class mip_filter { none, nearest, linear };
enum class border_color { transparent_black, opaque_black, opaque_white };
enum class compare_func {
    never, less, less_equal, greater, greater_equal, equal, not_equal, always, none = never
};
enum class access { sample, read, write, read_write };

// Version 3.2: the threads that see what others write into a texture. Types, because the third
// argument of a texture's template is one.
struct memory_coherence_threadgroup;
struct memory_coherence_device;

struct max_anisotropy {
    constexpr explicit max_anisotropy(int samples) : samples(samples) {}
    int samples;
};
struct lod_clamp {
    constexpr lod_clamp(float least, float greatest) : least(least), greatest(greatest) {}
    float least, greatest;
};

struct sampler {
    ulong bits;

    template <class... Arguments>
    constexpr sampler(Arguments... arguments)
        : bits((1ul << 1) | (1ul << 4) | (1ul << 7) | (0xfffful << 41)) {
        (set(arguments), ...);
    }
    constexpr sampler(const sampler&) = default;
    constexpr sampler(sampler& other) : bits(other.bits) {}

  private:
    template <class T> constexpr void set(T) {
        static_assert(sizeof(T) == 0, "the arguments of a sampler are coord, address, filter, "
                                      "mip_filter, border_color, compare_func, max_anisotropy and lod_clamp");
    }
    constexpr void field(int at, int width, ulong value) {
        bits = (bits & ~(((1ul << width) - 1) << at)) | (value << at);
    }
    static constexpr ulong level(float lod) {
        return lod >= 255.0f ? 0xfffful : lod <= 0.0f ? 0ul : ulong(lod * 256.0f + 0.5f);
    }
    constexpr void set(coord v) { field(0, 1, ulong(v)); }
    constexpr void set(s_address v) { field(1, 3, ulong(v)); }
    constexpr void set(t_address v) { field(4, 3, ulong(v)); }
    constexpr void set(r_address v) { field(7, 3, ulong(v)); }
    constexpr void set(address v) {
        set(s_address(v));
        set(t_address(v));
        set(r_address(v));
    }
    constexpr void set(mag_filter v) { field(10, 2, ulong(v)); }
    constexpr void set(min_filter v) { field(12, 2, ulong(v)); }
    constexpr void set(filter v) {
        set(mag_filter(v));
        set(min_filter(v));
    }
    constexpr void set(mip_filter v) { field(14, 2, ulong(v)); }
    constexpr void set(border_color v) { field(16, 2, ulong(v)); }
    constexpr void set(compare_func v) { field(18, 3, ulong(v)); }
    constexpr void set(max_anisotropy v) {
        field(21, 4, ulong(v.samples < 1 ? 0 : v.samples > 16 ? 15 : v.samples - 1));
    }
    constexpr void set(lod_clamp v) {
        field(25, 16, level(v.least));
        field(41, 16, level(v.greatest));
    }
};

} // namespace metal
