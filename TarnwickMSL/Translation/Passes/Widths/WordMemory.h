// Memory in words of 32 bits, for targets that lack smaller or wider types in memory.
#pragma once

namespace tarnwick::msl {

struct ShaderModule;

// Afterwards no variable and no access has a scalar that the memory of the target lacks; values
// still do. A store to memory that other invocations use changes only its own bytes. Throws
// TranslationError for a store of part of a word to the payload of mesh functions. Returns whether
// code changed.
bool useWordMemory(ShaderModule& shader);

} // namespace tarnwick::msl
