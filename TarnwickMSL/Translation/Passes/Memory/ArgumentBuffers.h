// Finds the textures, samplers and pointers that are members of argument buffers.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Turns each load of a member (ShaderModule::members) into the handle or the buffer of the member's
// own binding; an index of run time becomes a choice of the elements, and of neighbours of the same
// kind, which it cannot mean. Returns whether the code
// changed. Throws TranslationError on stores to members, and on textures and samplers of a record
// that is not the first of its buffer.
bool resolveArgumentBuffers(ShaderModule& shader);

} // namespace tarnwick::msl
