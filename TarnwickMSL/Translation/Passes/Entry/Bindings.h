// Which of an entry point's arguments its code still uses, and their bindings in Vulkan.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Drops the interface variables and textures that the code does not mention, and numbers what is
// left from the stage's first binding on, without gaps: buffers and the loop report in the order of
// the interface, then textures. Samplers follow when the writer meets them.
void assignBindings(ShaderModule& shader);

} // namespace tarnwick::msl
