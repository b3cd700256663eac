// Removes unused arguments of an entry point, and assigns Vulkan bindings.
#pragma once

#include "TarnwickMSL/Target.h"
#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Removes interface variables and textures that the code does not use. Numbers the rest without
// gaps from the first binding of the stage: buffers and the loop report in the order of the
// interface, then textures, then the grid's size for WGSL, which has no push constants. The writer
// numbers samplers after them.
void assignBindings(ShaderModule& shader, const Target& target);

} // namespace tarnwick::msl
