// Hides conditions on uniform values alone from the packaged CPU driver.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// The driver compiles a program anew for each draw, with the values of its uniform buffers as
// constants, if conditions depend on them alone and half of the program goes away with the values.
// Each such condition becomes "or x < 0", where x is a coordinate of the pixel or an index of the
// thread that is never negative. Other stages than fragment functions and kernels stay as they are.
void hideUniformConditions(ShaderModule& shader);

} // namespace tarnwick::msl
