// Vulkan's names of the layer's pixel formats.
#pragma once

#include "TarnwickGPU/Format.h"
#include "TarnwickMSL/EntryPoint.h"

#include <vulkan/vulkan.h>

namespace tarnwick::gpu {

VkFormat vulkanFormat(PixelFormat format);

// What shaders see of a pixel.
msl::TextureComponent componentOf(PixelFormat format);

} // namespace tarnwick::gpu
