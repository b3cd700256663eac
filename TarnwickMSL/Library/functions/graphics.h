// Derivatives and discard (Metal Shading Language 3.1, 6.10): built-in calls, which
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
MSL_EACH(dfdx) MSL_EACH(dfdy) MSL_EACH(fwidth)
#undef MSL_EACH
#undef MSL_BODY

__attribute__((convergent)) void _discard() __asm__("msl.discard");
MSL_INLINE void discard_fragment() { _discard(); }

} // namespace metal
