// The verifier of what the passes hand to the writer.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <string>

namespace tarnwick::msl {

// Checks every rule of docs/compiler.md, "The ShaderModule's code". Returns the first one that does
// not hold as a sentence, with the instruction or block; "" where all do.
std::string checkForm(const ShaderModule& shader);

} // namespace tarnwick::msl
