// Values in words of 32 bits and in floats, for targets that lack smaller or wider types.
#pragma once

namespace tarnwick::msl {

struct ShaderModule;

// Needs the form after useWordMemory. Afterwards no value has a type that the target lacks; only
// constant operands of calls and indices may. Integers are exact. Operations on halves are
// computed in float and rounded to a half each. Function constants of such types are zero, and the
// shader is shaped by constants. Throws TranslationError for what needs the type itself: atomic
// operations, addresses and SIMD-group sums of 64 bits. Returns whether code changed.
bool useWordValues(ShaderModule& shader);

} // namespace tarnwick::msl
