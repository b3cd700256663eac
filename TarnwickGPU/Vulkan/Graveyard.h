// Destroys handles once the GPU is done with them. Each is keyed by the submission that was the
// last when its owner was destroyed, so that no destructor waits.
#pragma once

#include "TarnwickGPU/Vulkan/DeviceRecord.h"
#include "TarnwickGPU/Vulkan/Submissions.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <mutex>
#include <vector>

namespace tarnwick::gpu {

class Graveyard {
  public:
    Graveyard(const DeviceRecord& device, Submissions& submissions)
        : device_(device), submissions_(submissions) {}

    // Ignores null handles. Handles buried together are destroyed in the order given. Any thread.
    template <typename... Handles> void bury(Handles... handles) {
        const std::uint64_t last = submissions_.last();
        std::lock_guard lock(mutex_);
        (add(last, typeOf(handles), reinterpret_cast<std::uint64_t>(handles)), ...);
    }

    // Destroys the handles that no unfinished submission uses. Any thread.
    void collect() { destroyUpTo(submissions_.completed()); }
    void destroyAll() { destroyUpTo(UINT64_MAX); } // the GPU is idle

  private:
    struct Remains {
        std::uint64_t lastSubmission;
        VkObjectType type;
        std::uint64_t handle;
    };

    static constexpr VkObjectType typeOf(VkBuffer) { return VK_OBJECT_TYPE_BUFFER; }
    static constexpr VkObjectType typeOf(VkImage) { return VK_OBJECT_TYPE_IMAGE; }
    static constexpr VkObjectType typeOf(VkBufferView) { return VK_OBJECT_TYPE_BUFFER_VIEW; }
    static constexpr VkObjectType typeOf(VkImageView) { return VK_OBJECT_TYPE_IMAGE_VIEW; }
    static constexpr VkObjectType typeOf(VkDeviceMemory) { return VK_OBJECT_TYPE_DEVICE_MEMORY; }
    static constexpr VkObjectType typeOf(VkPipeline) { return VK_OBJECT_TYPE_PIPELINE; }
    static constexpr VkObjectType typeOf(VkPipelineLayout) {
        return VK_OBJECT_TYPE_PIPELINE_LAYOUT;
    }
    static constexpr VkObjectType typeOf(VkDescriptorSetLayout) {
        return VK_OBJECT_TYPE_DESCRIPTOR_SET_LAYOUT;
    }
    static constexpr VkObjectType typeOf(VkDescriptorPool) {
        return VK_OBJECT_TYPE_DESCRIPTOR_POOL;
    }
    static constexpr VkObjectType typeOf(VkCommandPool) { return VK_OBJECT_TYPE_COMMAND_POOL; }

    void add(std::uint64_t lastSubmission, VkObjectType type, std::uint64_t handle);
    void destroyUpTo(std::uint64_t completed);

    const DeviceRecord& device_;
    Submissions& submissions_;
    std::mutex mutex_;
    std::vector<Remains> remains_; // ascending by lastSubmission
};

} // namespace tarnwick::gpu
