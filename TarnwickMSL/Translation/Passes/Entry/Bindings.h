// Removes unused arguments of an entry point, and assigns Vulkan bindings.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Removes interface variables and textures that the code does not use. Numbers the rest without
// gaps from the first binding of the stage: buffers and the loop report in the order of the
// interface, then textures. The writer numbers samplers after them.
void assignBindings(ShaderModule& shader);

} // namespace tarnwick::msl
