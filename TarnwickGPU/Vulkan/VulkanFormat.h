// Vulkan's formats for the layer's pixel formats.
#pragma once

#include "TarnwickGPU/Format.h"
#include "TarnwickMSL/EntryPoint.h"

#include <vulkan/vulkan.h>

namespace tarnwick::gpu {

VkFormat vulkanFormat(PixelFormat format);

// The type of the values that shaders read.
msl::TextureComponent componentOf(PixelFormat format);

} // namespace tarnwick::gpu
