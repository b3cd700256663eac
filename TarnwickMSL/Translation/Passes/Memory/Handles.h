// Makes the texture and sampler of each call constant, and the level of a texture that is written.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Textures and samplers are numbers in the code. A call whose texture or sampler depends on run
// time is split into one call for each possible one. Returns whether the code changed.
bool resolveHandles(ShaderModule& shader);

} // namespace tarnwick::msl
