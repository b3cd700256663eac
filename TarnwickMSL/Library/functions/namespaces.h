// The names that metal::fast and metal::precise share with metal.
#pragma once

#include "geometric.h"
#include "precise.h"

#define MSL_USE(T, name, ...) using metal::name;
#define MSL_USE_LANES(R, T, A, name, ...) using metal::name;
#define MSL_USE_VECTORS(R, T, name, ...) using metal::name;
#define MSL_USE_CORE(name, ...) using metal::name;
#define MSL_USE_SHARED                                                                             \
    MSL_COMMON_FUNCTIONS(MSL_USE, float)                                                           \
    MSL_LANE_FUNCTIONS(MSL_USE_LANES, float)                                                       \
    MSL_GEOMETRIC_FUNCTIONS(MSL_USE_VECTORS, float2, float)                                        \
    using metal::dot, metal::cross, metal::refract;

namespace metal {
namespace fast {
MSL_USE_SHARED
MSL_MATH_FUNCTIONS(MSL_USE, float, int)
MSL_CORE_FUNCTIONS(MSL_USE_CORE)
} // namespace fast
namespace precise {
MSL_USE_SHARED
} // namespace precise
} // namespace metal

#undef MSL_USE
#undef MSL_USE_LANES
#undef MSL_USE_VECTORS
#undef MSL_USE_CORE
#undef MSL_USE_SHARED
