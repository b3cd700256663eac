// Writes the descriptors of a draw or dispatch from the tables of bound resources.
#pragma once

#include "TarnwickGPU/Device/BindingLayout.h"

#include <vulkan/vulkan.h>

namespace tarnwick::gpu {

struct CommandBufferParts;

// Binds the resources that `layout` lists for the next draw or dispatch.
void bindResources(CommandBufferParts& commands, const BindingLayout& layout,
                   VkPipelineBindPoint point);

} // namespace tarnwick::gpu
