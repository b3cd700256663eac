#include "TarnwickGPU/Submissions.h"

#include "TarnwickBase/Precondition.h"

#include <array>

namespace tarnwick::gpu {

namespace {

constexpr std::size_t mostSignals = 8;

VkSemaphoreSubmitInfo signalInfo(VkSemaphore semaphore, std::uint64_t value) {
    return {.sType = VK_STRUCTURE_TYPE_SEMAPHORE_SUBMIT_INFO,
            .semaphore = semaphore,
            .value = value,
            .stageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT};
}

} // namespace

bool Submissions::start(VkDevice device, std::uint32_t queueFamily) {
    device_ = device;
    vkGetDeviceQueue(device, queueFamily, 0, &queue_);
    const VkSemaphoreTypeCreateInfo type{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_TYPE_CREATE_INFO,
                                         .semaphoreType = VK_SEMAPHORE_TYPE_TIMELINE};
    const VkSemaphoreCreateInfo info{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO,
                                     .pNext = &type};
    return vkCreateSemaphore(device, &info, nullptr, &timeline_) == VK_SUCCESS;
}

void Submissions::stop() {
    if (timeline_)
        vkDestroySemaphore(device_, timeline_, nullptr);
    timeline_ = VK_NULL_HANDLE;
}

std::optional<std::uint64_t> Submissions::submit(VkCommandBuffer commands,
                                                 std::span<const VkSemaphoreSubmitInfo> waits,
                                                 std::span<const VkSemaphore> signals) {
    precondition(signals.size() < mostSignals, "A command buffer presents at most 7 drawables.");
    if (isLost())
        return std::nullopt;
    std::lock_guard lock(mutex_);
    const std::uint64_t number = last_.load(std::memory_order_relaxed) + 1;
    std::array<VkSemaphoreSubmitInfo, mostSignals> signalInfos;
    std::uint32_t signalCount = 0;
    signalInfos[signalCount++] = signalInfo(timeline_, number);
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
    const VkResult result = vkQueueSubmit2(queue_, 1, &info, VK_NULL_HANDLE);
    note(result);
    if (result != VK_SUCCESS)
        return std::nullopt;
    last_.store(number, std::memory_order_release);
    return number;
}

VkResult Submissions::present(const VkPresentInfoKHR& info) {
    std::lock_guard lock(mutex_);
    const VkResult result = vkQueuePresentKHR(queue_, &info);
    note(result);
    return result;
}

std::uint64_t Submissions::completed() {
    std::uint64_t value = 0;
    note(vkGetSemaphoreCounterValue(device_, timeline_, &value));
    return value;
}

bool Submissions::wait(std::uint64_t submission) {
    if (isLost())
        return false;
    const VkSemaphoreWaitInfo info{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_WAIT_INFO,
                                   .semaphoreCount = 1,
                                   .pSemaphores = &timeline_,
                                   .pValues = &submission};
    const VkResult result = vkWaitSemaphores(device_, &info, UINT64_MAX);
    note(result);
    return result == VK_SUCCESS;
}

void Submissions::waitIdle() {
    std::lock_guard lock(mutex_);
    note(vkQueueWaitIdle(queue_));
}

void Submissions::note(VkResult result) {
    if (result == VK_ERROR_DEVICE_LOST)
        lost_.store(true, std::memory_order_relaxed);
}

} // namespace tarnwick::gpu
