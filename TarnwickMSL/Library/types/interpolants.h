// Inputs of a fragment function that it interpolates itself (Metal Shading Language 3.1, 6.11). The
// wrapper of the entry point gives each the address of its input, whose lanes are floats.
#pragma once

#include "traits.h"
#include "construct.h"

namespace metal {

enum class interpolation { perspective, no_perspective };

#define MSL_INTERPOLATE(T, suffix)                                                                 \
    T _interpolate_centroid(const T*) asm("msl.interpolate_centroid." suffix);                     \
    T _interpolate_sample(const T*, uint) asm("msl.interpolate_sample." suffix);                   \
    T _interpolate_offset(const T*, float2) asm("msl.interpolate_offset." suffix);
MSL_INTERPOLATE(float, "1") MSL_INTERPOLATE(float2, "2")
MSL_INTERPOLATE(float3, "3") MSL_INTERPOLATE(float4, "4")
#undef MSL_INTERPOLATE

template <class T, interpolation> class interpolant {
  public:
    MSL_INLINE T interpolate_at_center() const { return narrowed(_interpolate_offset(input, float2(0))); }
    MSL_INLINE T interpolate_at_centroid() const { return narrowed(_interpolate_centroid(input)); }
    MSL_INLINE T interpolate_at_sample(uint sample) const { return narrowed(_interpolate_sample(input, sample)); }
    // From the upper left corner of the pixel, [0, 1); built-in calls count from its centre.
    MSL_INLINE T interpolate_at_offset(float2 offset) const { return narrowed(_interpolate_offset(input, offset - 0.5f)); }

  private:
    typedef conditional_t<lanes_of<T> == 1, float, vec<float, lanes_of<T>>> Wide;
    const Wide* input;
    static MSL_INLINE T narrowed(Wide x) { return _lanes_as<element_of<T>>(x); }
};

} // namespace metal
