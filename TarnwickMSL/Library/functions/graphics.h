// Derivatives, discard, helper threads and samples (Metal Shading Language 3.1, 6.10): built-in calls, which
// docs/compiler.md lists.
#pragma once

#include "common.h"

namespace metal {

#define MSL_BODY(name, N, suffix)                                                                  \
    __attribute__((convergent, const)) float##N _##name(float##N x)                                \
        __asm__("msl." #name "." suffix);                                                          \
    MSL_INLINE float##N name(float##N x) { return _##name(x); }                                    \
    MSL_INLINE half##N name(half##N x) { return _narrow(_##name(_wide(x))); }
#define MSL_EACH(name) MSL_BODY(name, , "1") MSL_BODY(name, 2, "2") MSL_BODY(name, 3, "3") MSL_BODY(name, 4, "4")
/** The change of x from this pixel to the next one, horizontally. */
MSL_EACH(dfdx)
/** The change of x from this pixel to the next one, vertically. */
MSL_EACH(dfdy)
/** abs(dfdx(x)) + abs(dfdy(x)). */
MSL_EACH(fwidth)
#undef MSL_EACH
#undef MSL_BODY

__attribute__((convergent)) void _discard() __asm__("msl.discard");
/** Draws nothing at this pixel. */
MSL_INLINE void discard_fragment() { _discard(); }

bool _is_helper() __asm__("msl.is_helper");
/** Whether the thread only computes derivatives for its neighbours. */
MSL_INLINE bool simd_is_helper_thread() { return _is_helper(); }

uint _target_samples() __asm__("msl.target_samples");
uint _standard_samples() __asm__("msl.standard_samples"); // the same; needs Vulkan's standard positions
/** The number of samples for each pixel. */
MSL_INLINE uint get_num_samples() { return _target_samples(); }

// The standard positions in pixels of 1, 2, 4, 8 and 16 samples, one list after the other (Vulkan
// 1.3, "Multisampling").
static constexpr float2 _sample_positions[31] = {
    {0.5f, 0.5f},
    {0.75f, 0.75f}, {0.25f, 0.25f},
    {0.375f, 0.125f}, {0.875f, 0.375f}, {0.125f, 0.625f}, {0.625f, 0.875f},
    {0.5625f, 0.3125f}, {0.4375f, 0.6875f}, {0.8125f, 0.5625f}, {0.3125f, 0.1875f},
    {0.1875f, 0.8125f}, {0.0625f, 0.4375f}, {0.6875f, 0.9375f}, {0.9375f, 0.0625f},
    {0.5625f, 0.5625f}, {0.4375f, 0.3125f}, {0.3125f, 0.625f}, {0.75f, 0.4375f},
    {0.1875f, 0.375f}, {0.625f, 0.8125f}, {0.8125f, 0.6875f}, {0.6875f, 0.1875f},
    {0.375f, 0.875f}, {0.5f, 0.0625f}, {0.25f, 0.125f}, {0.125f, 0.75f},
    {0.0f, 0.5f}, {0.9375f, 0.25f}, {0.875f, 0.9375f}, {0.0625f, 0.0f}};
/** The position of a sample in its pixel, from 0 to 1. */
MSL_INLINE float2 get_sample_position(uint index) {
    const uint last = _standard_samples() - 1;
    return _sample_positions[last + (index < last ? index : last)];
}

} // namespace metal
