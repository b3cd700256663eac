#include "TarnwickGPU/Vulkan/Submissions.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace tarnwick::gpu {

namespace {

constexpr std::size_t mostSignals = 8;

VkSemaphoreSubmitInfo signalInfo(VkSemaphore semaphore, std::uint64_t value) {
    return {.sType = VK_STRUCTURE_TYPE_SEMAPHORE_SUBMIT_INFO,
            .semaphore = semaphore,
            .value = value,
            .stageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT};
}

std::uint64_t wantedLoss() {
    const char* wanted = std::getenv("TARNWICK_LOSE_DEVICE");
    return wanted != nullptr ? std::strtoull(wanted, nullptr, 10) : 0;
}

} // namespace

bool Submissions::start(VkDevice device, std::uint32_t queueFamily, std::uint32_t queueCount) {
    device_ = device;
    untilLoss_ = wantedLoss();
    const VkSemaphoreTypeCreateInfo type{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_TYPE_CREATE_INFO,
                                         .semaphoreType = VK_SEMAPHORE_TYPE_TIMELINE};
    const VkSemaphoreCreateInfo info{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO,
                                     .pNext = &type};
    for (std::uint32_t lane = 0; lane < laneCount; ++lane) {
        Track& track = tracks_[lane];
        vkGetDeviceQueue(device, queueFamily, std::min(lane, queueCount - 1), &track.queue);
        if (vkCreateSemaphore(device, &info, nullptr, &track.timeline) != VK_SUCCESS)
            return false;
    }
    return true;
}

void Submissions::stop() {
    for (Track& track : tracks_) {
        if (track.timeline)
            vkDestroySemaphore(device_, track.timeline, nullptr);
        track.timeline = VK_NULL_HANDLE;
    }
}

std::optional<std::uint64_t> Submissions::submit(Lane lane, VkCommandBuffer commands,
                                                 std::span<const VkSemaphoreSubmitInfo> waits,
                                                 std::span<const VkSemaphore> signals) {
    precondition(signals.size() < mostSignals, "a submission signals at most 7 semaphores",
                 "semaphores", signals.size());
    if (isLost())
        return std::nullopt;
    std::lock_guard lock(mutex_);
    if (untilLoss_ > 0 && --untilLoss_ == 0) {
        note(VK_ERROR_DEVICE_LOST);
        return std::nullopt;
    }
    const auto index = static_cast<std::uint64_t>(lane);
    const std::uint64_t before = last_.load(std::memory_order_relaxed);
    const std::uint64_t number = (before / laneCount + 1) * laneCount + index;
    Track& track = tracks_[index];
    std::array<VkSemaphoreSubmitInfo, mostSignals> signalInfos;
    std::uint32_t signalCount = 0;
    signalInfos[signalCount++] = signalInfo(track.timeline, number);
    for (VkSemaphore signal : signals)
        signalInfos[signalCount++] = signalInfo(signal, 0);

    const VkCommandBufferSubmitInfo buffer{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_SUBMIT_INFO,
                                           .commandBuffer = commands};
    const VkSubmitInfo2 info{.sType = VK_STRUCTURE_TYPE_SUBMIT_INFO_2,
                             .waitSemaphoreInfoCount = static_cast<std::uint32_t>(waits.size()),
                             .pWaitSemaphoreInfos = waits.data(),
                             .commandBufferInfoCount = 1,
                             .pCommandBufferInfos = &buffer,
                             .signalSemaphoreInfoCount = signalCount,
                             .pSignalSemaphoreInfos = signalInfos.data()};
    const VkResult result = vkQueueSubmit2(track.queue, 1, &info, VK_NULL_HANDLE);
    note(result);
    if (result != VK_SUCCESS)
        return std::nullopt;
    track.last.store(number, std::memory_order_release);
    last_.store(number, std::memory_order_release);
    return number;
}

VkResult Submissions::present(const VkPresentInfoKHR& info) {
    std::lock_guard lock(mutex_);
    const VkResult result = vkQueuePresentKHR(trackOf(0).queue, &info);
    note(result);
    return result;
}

std::uint64_t Submissions::valueOf(const Track& track) {
    std::uint64_t value = 0;
    note(vkGetSemaphoreCounterValue(device_, track.timeline, &value));
    return value;
}

// Reads the number of the last submission first: a lane that is idle after that has finished its
// part of all submissions up to that number.
std::uint64_t Submissions::completed() {
    std::uint64_t done = last();
    for (const Track& track : tracks_) {
        const std::uint64_t submitted = track.last.load(std::memory_order_acquire);
        const std::uint64_t value = valueOf(track);
        if (value < submitted)
            done = std::min(done, value);
    }
    return done;
}

bool Submissions::isDone(std::uint64_t submission) {
    return valueOf(trackOf(submission)) >= submission;
}

bool Submissions::wait(std::uint64_t submission, std::uint64_t nanoseconds) {
    if (isLost())
        return false;
    const VkSemaphoreWaitInfo info{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_WAIT_INFO,
                                   .semaphoreCount = 1,
                                   .pSemaphores = &trackOf(submission).timeline,
                                   .pValues = &submission};
    const VkResult result = vkWaitSemaphores(device_, &info, nanoseconds);
    note(result);
    return result == VK_SUCCESS;
}

void Submissions::waitIdle() {
    std::lock_guard lock(mutex_);
    note(vkQueueWaitIdle(trackOf(0).queue));
}

void Submissions::note(VkResult result) {
    if (result == VK_ERROR_DEVICE_LOST)
        lost_.store(true, std::memory_order_relaxed);
}

} // namespace tarnwick::gpu
