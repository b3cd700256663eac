// The allocated descriptor sets of a command buffer, for devices without push descriptors and for
// pipelines that bind more than the device can push.
#pragma once

#include <vulkan/vulkan.h>

#include <cstddef>
#include <vector>

namespace tarnwick::gpu {

class Graveyard;
struct DeviceRecord;

class DescriptorSets {
  public:
    // Null if out of memory. Valid until reset().
    VkDescriptorSet take(const DeviceRecord& device, VkDescriptorSetLayout layout);
    void reset(const DeviceRecord& device); // the GPU uses none of the sets
    void bury(Graveyard& graveyard);

  private:
    std::vector<VkDescriptorPool> pools_;
    std::size_t pool_ = 0; // the one in use
};

} // namespace tarnwick::gpu
