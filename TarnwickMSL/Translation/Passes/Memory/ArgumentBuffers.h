// Finds the textures, samplers and pointers that are members of argument buffers.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Turns each load of a member (ShaderModule::members) into the handle or the buffer of the member's
// own binding. An index of run time becomes a choice of the elements, and of neighbours of the same
// kind, which it cannot mean; so does that of a record if its maximum is known. Pointers stay in
// memory, as addresses, if their record is chosen at run time, if the function stores pointers into
// the buffer, or, if `followsAddresses`, if they are of a longer array that is indexed at run time.
// Returns whether the code changed. Throws TranslationError on stores to textures and samplers, and
// on those of one of too many records.
bool resolveArgumentBuffers(ShaderModule& shader, bool followsAddresses);

} // namespace tarnwick::msl
