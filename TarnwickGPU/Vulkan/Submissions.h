// The Vulkan queues of a device and the timeline semaphores that count what was submitted to them
// (Vulkan 1.3, 7.4). Any thread.
//
// There are two lanes, one for pictures and one for kernels beside them. Each is a queue if the
// family has two; else both are the same queue. Submissions are numbered across both lanes, with
// the lane in the lowest bit, and each lane's semaphore has the values of its own submissions.
//
// Work in pieces is submitted by a thread of its queue, which submits the next piece when the GPU
// has finished the one before. What is submitted to the queue meanwhile follows in order.
#pragma once

#include "TarnwickGPU/Vulkan/PiecewiseWork.h"

#include <vulkan/vulkan.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <thread>
#include <vector>

namespace tarnwick::gpu {

enum class Lane : std::uint8_t { pictures, beside };

class Submissions {
  public:
    Submissions() = default;
    ~Submissions() { finish(); }

    // `queueCount` queues of the family were created with the device. False if out of memory.
    bool start(VkDevice device, std::uint32_t queueFamily, std::uint32_t queueCount);
    // Abandons work in pieces and ends the threads. Blocks for the pieces that the GPU has.
    void finish();
    void stop(); // after finish(); the GPU is idle

    // Submits and returns the submission's number, above 0; nothing when the device is lost. With
    // `signals` it blocks until the queue's work in pieces is submitted.
    std::optional<std::uint64_t> submit(Lane lane, VkCommandBuffer commands,
                                        std::span<const VkSemaphoreSubmitInfo> waits = {},
                                        std::span<const VkSemaphore> signals = {});
    std::optional<std::uint64_t> submit(Lane lane, std::shared_ptr<PiecewiseWork> work,
                                        std::span<const VkSemaphoreSubmitInfo> waits = {});
    // What the GPU has not begun of work in pieces is left out.
    void abandon(std::uint64_t submission);
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

    // The longest time that one piece took so far, in seconds.
    double longestPiece() const { return longestPiece_.load(std::memory_order_relaxed); }
    std::uint64_t pieces() const { return pieces_.load(std::memory_order_relaxed); } // so far

  private:
    struct Track { // by Lane
        VkQueue queue = VK_NULL_HANDLE;
        VkSemaphore timeline = VK_NULL_HANDLE;
        std::atomic<std::uint64_t> last{0}; // submission of this lane
    };

    // What is submitted after the jobs before it.
    struct Job {
        std::uint64_t number = 0;
        VkCommandBuffer commands = VK_NULL_HANDLE; // null: `work`
        std::shared_ptr<PiecewiseWork> work;
        std::vector<VkSemaphoreSubmitInfo> waits;
        bool isAbandoned = false;
    };

    // The jobs of a queue and the thread that submits them.
    struct Feeder {
        std::deque<std::shared_ptr<Job>> jobs; // the first is being submitted
        std::thread thread;
        VkSemaphore pieces = VK_NULL_HANDLE; // counts the pieces
        std::uint64_t pieceCount = 0;
        // The job whose last piece is being submitted. The GPU may be done with it before
        // vkQueueSubmit2 returns, but its command buffer is not free before that.
        std::atomic<std::uint64_t> inSubmission{0};
    };

    static constexpr std::size_t laneCount = 2;

    Track& trackOf(std::uint64_t submission) { return tracks_[submission % laneCount]; }
    Feeder& feederOf(Lane lane);
    std::uint64_t valueOf(const Track& track);
    bool takeLoss();
    std::uint64_t takeNumber(Lane lane);
    void enqueue(Feeder& feeder, Job job);
    void feed(Feeder& feeder);
    void run(Feeder& feeder, Job& job);
    std::optional<PiecewiseWork::Piece> nextPiece(const Job& job);
    bool submitPiece(Feeder& feeder, Job& job, const PiecewiseWork::Piece& piece);
    bool waitForPiece(const Feeder& feeder);

    VkDevice device_ = VK_NULL_HANDLE;
    std::array<Track, laneCount> tracks_;
    std::array<Feeder, laneCount> feeders_; // by queue
    std::uint32_t queueCount_ = 1;
    std::mutex mutex_; // vkQueue* calls are externally synchronised; also guards the feeders' jobs
    std::condition_variable changes_; // of the jobs
    bool isEnding_ = false;
    std::atomic<std::uint64_t> last_{0};
    std::atomic<bool> lost_{false};
    std::atomic<double> longestPiece_{0};
    std::atomic<std::uint64_t> pieces_{0};
    std::uint64_t untilLoss_ =
        0; // submissions until the loss that the environment asks for; 0: none
};

} // namespace tarnwick::gpu
