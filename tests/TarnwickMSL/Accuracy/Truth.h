// The library's functions of one number in double, over arrays. The loops call the vector functions
// of the C library where the compiler knows them; those are within 4 units in the last place of
// double, 2^-27 of a unit of float.
#pragma once

#include <cstddef>
#include <string_view>

namespace tarnwick::trials {

// result[i] = f(x[i]) for `count` numbers that are neither NaN nor infinite.
using Truth = void (*)(const float* x, double* result, std::size_t count);

// The function of a name, "sin" for instance. Null for an unknown name.
Truth truthOf(std::string_view name);

} // namespace tarnwick::trials
