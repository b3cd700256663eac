#include "TarnwickGPU/Vulkan/MemoryBarrier.h"

namespace tarnwick::gpu {

void recordMemoryBarrier(VkCommandBuffer commands, VkPipelineStageFlags2 before,
                         VkPipelineStageFlags2 after) {
    const VkMemoryBarrier2 barrier{.sType = VK_STRUCTURE_TYPE_MEMORY_BARRIER_2,
                                   .srcStageMask = before,
                                   .srcAccessMask = VK_ACCESS_2_MEMORY_WRITE_BIT,
                                   .dstStageMask = after,
                                   .dstAccessMask =
                                       VK_ACCESS_2_MEMORY_READ_BIT | VK_ACCESS_2_MEMORY_WRITE_BIT};
    const VkDependencyInfo info{.sType = VK_STRUCTURE_TYPE_DEPENDENCY_INFO,
                                .memoryBarrierCount = 1,
                                .pMemoryBarriers = &barrier};
    vkCmdPipelineBarrier2(commands, &info);
}

} // namespace tarnwick::gpu
