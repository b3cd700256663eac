// Turns short branches into selections of values.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Replaces a branch around short code without effects by that code and a selection of its values,
// and two tests with a common destination by one. Keeps branches whose condition is the same for
// all invocations. Requires the flow of normaliseFlow. Returns whether the code changed.
bool flattenBranches(ShaderModule& shader);

} // namespace tarnwick::msl
