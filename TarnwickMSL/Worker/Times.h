// Where the compiler's time goes.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd.h"

#include <span>
#include <string>

namespace tarnwick::msl {

// Compiles each program often and prints, in one line for each step, its name, the sum over the
// programs of the shortest processor time, in milliseconds, and its share. False if a program has
// errors.
bool printTimes(std::span<const std::string> programs, const StandardLibrary& library);

} // namespace tarnwick::msl
