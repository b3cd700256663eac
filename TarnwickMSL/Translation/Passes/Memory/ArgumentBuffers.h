// Finds the textures, samplers and pointers that are members of argument buffers.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Turns each load of a member (ShaderModule::members) into the handle or the buffer of the member's
// own binding; an index of run time becomes a choice of the elements, and of neighbours of the same
// kind, which it cannot mean. Pointers of records that are chosen at run time, of a buffer into which
// the function stores pointers, or, if `followsAddresses`, of a longer array that is indexed at run
// time stay in memory, as addresses. Returns whether the code
// changed. Throws TranslationError on stores to textures and samplers, and on those of a record
// that is chosen at run time.
bool resolveArgumentBuffers(ShaderModule& shader, bool followsAddresses);

} // namespace tarnwick::msl
