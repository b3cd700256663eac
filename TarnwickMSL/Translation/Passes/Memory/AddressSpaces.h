// Answers in which address space a pointer is.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Replaces each call of msl.in_SPACE by a constant, where the variables are known that its pointer
// may point to. A pointer in a buffer points to device memory. Returns whether the code changed.
bool answerSpaces(ShaderModule& shader);

// The same; throws TranslationError on a pointer whose space is not known.
bool answerAllSpaces(ShaderModule& shader);

} // namespace tarnwick::msl
