// The Vulkan queues of a device and the timeline semaphores that count what was submitted to them
// (Vulkan 1.3, 7.4). Any thread.
//
// There are two lanes, one for pictures and one for kernels beside them. Each is a queue if the
// family has two; else both are the same queue. Submissions are numbered across both lanes, with
// the lane in the lowest bit, and each lane's semaphore has the values of its own submissions.
#pragma once

#include <vulkan/vulkan.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>

namespace tarnwick::gpu {

enum class Lane : std::uint8_t { pictures, beside };

class Submissions {
  public:
    // `queueCount` queues of the family were created with the device. False if out of memory.
    bool start(VkDevice device, std::uint32_t queueFamily, std::uint32_t queueCount);
    void stop(); // the GPU is idle

    // Submits and returns the submission's number, above 0; nothing when the device is lost.
    std::optional<std::uint64_t> submit(Lane lane, VkCommandBuffer commands,
                                        std::span<const VkSemaphoreSubmitInfo> waits = {},
                                        std::span<const VkSemaphore> signals = {});
    VkResult present(const VkPresentInfoKHR& info);

    std::uint64_t last() const { return last_.load(std::memory_order_acquire); }
    // The GPU has finished all submissions up to this number.
    std::uint64_t completed();
    bool isDone(std::uint64_t submission);
    // Blocks for at most `nanoseconds`; false if the device is lost or has not finished it by then.
    bool wait(std::uint64_t submission, std::uint64_t nanoseconds = UINT64_MAX);
    void waitIdle(); // blocks until submissions and presentation are done

    bool isLost() const { return lost_.load(std::memory_order_relaxed); }
    void note(VkResult result); // VK_ERROR_DEVICE_LOST makes isLost() true

  private:
    struct Track {
        VkQueue queue = VK_NULL_HANDLE;
        VkSemaphore timeline = VK_NULL_HANDLE;
        std::atomic<std::uint64_t> last{0}; // submission of this lane
    };

    static constexpr std::size_t laneCount = 2;

    Track& trackOf(std::uint64_t submission) { return tracks_[submission % laneCount]; }
    std::uint64_t valueOf(const Track& track);

    VkDevice device_ = VK_NULL_HANDLE;
    std::array<Track, laneCount> tracks_; // by Lane
    std::mutex mutex_;                    // vkQueue* calls are externally synchronised
    std::atomic<std::uint64_t> last_{0};
    std::atomic<bool> lost_{false};
    std::uint64_t untilLoss_ =
        0; // submissions until the loss that the environment asks for; 0: none
};

} // namespace tarnwick::gpu
