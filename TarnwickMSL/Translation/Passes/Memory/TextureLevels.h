// Makes the level of each read and write of a texture that is written a constant.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// A texture that is written is seen through one view for each level. A call whose level depends on
// run time is split into one call for each level that a texture of 16,384 pixels has. Requires
// constant handles. Returns whether the code changed.
bool resolveLevels(ShaderModule& shader);

} // namespace tarnwick::msl
