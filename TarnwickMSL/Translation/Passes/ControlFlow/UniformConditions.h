// Hides conditions on uniform values alone from drivers that compile for these values.
#pragma once

#include "TarnwickMSL/Target.h"
#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// The packaged CPU driver compiles a program anew for each draw, with the values of its uniform
// buffers as constants, if conditions depend on them alone and half of the program goes away with
// the values. Each such condition becomes "or x < 0", where x is a coordinate of the pixel or an
// index of the thread that is never negative. Without `target.specialisesUniforms`, and in other
// stages than fragment functions and kernels, all remains as it is.
void hideUniformConditions(ShaderModule& shader, const Target& target);

} // namespace tarnwick::msl
