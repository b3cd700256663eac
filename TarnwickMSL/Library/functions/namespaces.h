// The names that metal::fast and metal::precise share with metal.
#pragma once

#include "precise.h"

#define MSL_SHARED_NAMES(M)                                                                        \
    M(abs) M(fabs) M(floor) M(ceil) M(trunc) M(rint) M(round) M(copysign) M(fmin) M(fmax) M(min)   \
    M(max) M(fmin3) M(fmax3) M(fmedian3) M(min3) M(max3) M(median3) M(fdim) M(clamp) M(saturate)   \
    M(mix) M(sign) M(step) M(smoothstep) M(frexp) M(ldexp) M(ilogb) M(nextafter) M(fma)            \
    M(dot) M(cross) M(length) M(length_squared) M(distance) M(distance_squared) M(normalize)       \
    M(faceforward) M(reflect) M(refract)
#define MSL_USE(name) using metal::name;

namespace metal {
namespace fast {
MSL_MATH_NAMES(MSL_USE)
MSL_SHARED_NAMES(MSL_USE)
MSL_USE(divide)
} // namespace fast
namespace precise {
MSL_SHARED_NAMES(MSL_USE)
} // namespace precise
} // namespace metal

#undef MSL_USE
#undef MSL_SHARED_NAMES
#undef MSL_MATH_NAMES
