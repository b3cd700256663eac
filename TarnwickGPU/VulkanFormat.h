// Vulkan's names of the layer's pixel formats.
#pragma once

#include "TarnwickGPU/Format.h"

#include <vulkan/vulkan.h>

namespace tarnwick::gpu {

VkFormat vulkanFormat(PixelFormat format);

} // namespace tarnwick::gpu
