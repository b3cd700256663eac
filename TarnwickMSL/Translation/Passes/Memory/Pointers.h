// Resolves pointers selected at run time, which logical addressing of SPIR-V cannot express.
#pragma once

#include "TarnwickMSL/Target.h"
#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Turns each phi or select of pointers into numbers (index of the root, offset in it), and each
// access through one into accesses of all possible roots; pointers in buffers become addresses.
// Returns whether the code changed. Throws TranslationError on pointers that cannot be resolved.
bool resolvePointers(ShaderModule& shader, const Target& target);

} // namespace tarnwick::msl
