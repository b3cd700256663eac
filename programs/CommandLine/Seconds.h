// Times and durations on the command line.
#pragma once

#include "programs/CommandLine/Arguments.h"

#include <string_view>

namespace tarnwick {

// What `option` says, a number of seconds from 0 on that a float can hold, since the GPU is told in
// single precision; `otherwise` where it is not given. Throws CommandError.
double secondsFromZero(const Arguments& arguments, std::string_view option, double otherwise);
// The same of the word `given`, which stands after `option`.
double secondsFromZero(std::string_view given, std::string_view option);

} // namespace tarnwick
