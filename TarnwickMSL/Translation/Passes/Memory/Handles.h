// Textures and samplers are numbers in the code, and each call must name its own as a constant.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Splits each call whose texture or sampler depends on what happens at run time into one for every
// one that it may be. Returns whether the code changed.
bool resolveHandles(ShaderModule& shader);

} // namespace tarnwick::msl
