// An entry point as lines for people.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <string>

namespace tarnwick {

// "kernel twice, 112 words", and below it a line for each binding and function constant.
std::string listing(const msl::EntryPoint& entry);

} // namespace tarnwick
