// A barrier for all memory of a device.
#pragma once

#include <vulkan/vulkan.h>

namespace tarnwick::gpu {

// What `after` reads and writes follows what `before` wrote (Vulkan 1.3, 7.6).
void recordMemoryBarrier(VkCommandBuffer commands,
                         VkPipelineStageFlags2 before = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT,
                         VkPipelineStageFlags2 after = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT);

} // namespace tarnwick::gpu
