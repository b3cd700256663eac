// The options of tarnwick msl, and what they ask of the compiler.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickMSL/Compile.h"

#include <span>

namespace tarnwick {

extern const std::span<const Option> mslOptions;

// Throws CommandError for a value that the compiler does not take.
msl::CompileOptions compileOptionsOf(const Arguments& arguments);

} // namespace tarnwick
