// Where GPU handles wait until the GPU is done with them: each is keyed by the submission that was
// the last when its owner went, so that no destructor waits.
#pragma once

#include <vulkan/vulkan.h>

#include <cstdint>
#include <mutex>
#include <vector>

namespace tarnwick::gpu {

class Graveyard {
  public:
    // Null handles are passed over. Handles buried together go in the order given. Any thread.
    template <typename... Handles> void bury(std::uint64_t lastSubmission, Handles... handles) {
        std::lock_guard lock(mutex_);
        (add(lastSubmission, typeOf(handles), reinterpret_cast<std::uint64_t>(handles)), ...);
    }

    // Destroys what no submission after `completed` uses.
    void collect(VkDevice device, std::uint64_t completed);

  private:
    struct Remains {
        std::uint64_t lastSubmission;
        VkObjectType type;
        std::uint64_t handle;
    };

    static constexpr VkObjectType typeOf(VkBuffer) { return VK_OBJECT_TYPE_BUFFER; }
    static constexpr VkObjectType typeOf(VkImage) { return VK_OBJECT_TYPE_IMAGE; }
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

    std::mutex mutex_;
    std::vector<Remains> remains_; // ascending by lastSubmission
};

} // namespace tarnwick::gpu
