// The one Vulkan queue of a device and the timeline semaphore that counts what was submitted to it
// (Vulkan 1.3, 7.4). Any thread.
#pragma once

#include <vulkan/vulkan.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>

namespace tarnwick::gpu {

class Submissions {
  public:
    // False when the device has no memory left for it.
    bool start(VkDevice device, std::uint32_t queueFamily);
    void stop(); // the GPU is idle

    // Submits and returns the submission's number, from 1; nothing when the device is lost.
    std::optional<std::uint64_t> submit(VkCommandBuffer commands,
                                        std::span<const VkSemaphoreSubmitInfo> waits = {},
                                        std::span<const VkSemaphore> signals = {});
    VkResult present(const VkPresentInfoKHR& info);

    std::uint64_t last() const { return last_.load(std::memory_order_acquire); }
    std::uint64_t completed();           // the last submission that the GPU is done with
    bool wait(std::uint64_t submission); // blocks; false when the device is lost
    void waitIdle();                     // blocks, for presentation too

    bool isLost() const { return lost_.load(std::memory_order_relaxed); }
    void note(VkResult result); // remembers VK_ERROR_DEVICE_LOST

  private:
    VkDevice device_ = VK_NULL_HANDLE;
    VkQueue queue_ = VK_NULL_HANDLE;
    VkSemaphore timeline_ = VK_NULL_HANDLE;
    std::mutex mutex_; // vkQueue* calls are externally synchronised
    std::atomic<std::uint64_t> last_{0};
    std::atomic<bool> lost_{false};
};

} // namespace tarnwick::gpu
