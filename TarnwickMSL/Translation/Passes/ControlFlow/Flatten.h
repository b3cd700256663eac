// Turns short branches into selections of values.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Replaces the branches of short regions without effects by their code and selections of its
// values, and two tests with a common destination by one; a loop that may end before its last block
// runs that block in any case. Keeps branches whose condition is the same for all invocations.
// Requires the flow of normaliseFlow. Returns whether the code changed.
bool flattenBranches(ShaderModule& shader);

} // namespace tarnwick::msl
