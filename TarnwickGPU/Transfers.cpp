#include "TarnwickGPU/Transfers.h"

#include "TarnwickGPU/DeviceState.h"

#include <algorithm>
#include <bit>

namespace tarnwick::gpu {

namespace {

constexpr VkDeviceSize leastStaging = 65536;

// Everything before or after the job on the queue, and the CPU's view of staging memory.
void waitForAll(VkCommandBuffer commands, VkPipelineStageFlags2 before,
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

} // namespace

Transfers::Slot* Transfers::freeSlot(DeviceState& device) {
    if (!pool_) {
        const VkCommandPoolCreateInfo info{.sType = VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO,
                                           .flags = VK_COMMAND_POOL_CREATE_RESET_COMMAND_BUFFER_BIT,
                                           .queueFamilyIndex = device.queueFamily};
        if (vkCreateCommandPool(device.handle, &info, nullptr, &pool_) != VK_SUCCESS)
            return nullptr;
    }
    const std::uint64_t completed = device.submissions.completed();
    auto slot = std::find_if(slots_.begin(), slots_.end(),
                             [completed](const Slot& one) { return one.submission <= completed; });
    if (slot != slots_.end())
        return &*slot;
    const VkCommandBufferAllocateInfo info{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO,
                                           .commandPool = pool_,
                                           .level = VK_COMMAND_BUFFER_LEVEL_PRIMARY,
                                           .commandBufferCount = 1};
    Slot made;
    if (vkAllocateCommandBuffers(device.handle, &info, &made.commands) != VK_SUCCESS)
        return nullptr;
    return &slots_.emplace_back(made);
}

std::optional<std::uint64_t> Transfers::submit(DeviceState& device, const Record& record) {
    Slot* slot = device.submissions.isLost() ? nullptr : freeSlot(device);
    const VkCommandBufferBeginInfo begin{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO,
                                         .flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT};
    if (!slot || vkBeginCommandBuffer(slot->commands, &begin) != VK_SUCCESS)
        return std::nullopt;
    record(slot->commands);
    waitForAll(slot->commands, VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT,
               VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT | VK_PIPELINE_STAGE_2_HOST_BIT);
    if (vkEndCommandBuffer(slot->commands) != VK_SUCCESS)
        return std::nullopt;
    const auto number = device.submissions.submit(slot->commands);
    if (number)
        slot->submission = *number;
    return number;
}

bool Transfers::makeStaging(DeviceState& device, VkDeviceSize size) {
    if (staging_.size >= size)
        return device.submissions.wait(stagingUse_);
    bury(device, staging_);
    const auto made =
        makeBufferMemory(device, std::bit_ceil(std::max(size, leastStaging)), MemoryUse::readBack);
    if (made)
        staging_ = *made;
    return made.has_value();
}

bool Transfers::run(DeviceState& device, const Record& record) {
    std::lock_guard lock(mutex_);
    return submit(device, record).has_value();
}

bool Transfers::upload(DeviceState& device, VkDeviceSize size, const Bytes& fill,
                       const RecordStaged& record) {
    std::lock_guard lock(mutex_);
    if (!makeStaging(device, size))
        return false;
    fill(staging_.bytes);
    const auto number =
        submit(device, [&](VkCommandBuffer commands) { record(commands, staging_.buffer); });
    stagingUse_ = number.value_or(stagingUse_);
    return number.has_value();
}

bool Transfers::readBack(DeviceState& device, VkDeviceSize size, const RecordStaged& record,
                         const Bytes& take) {
    std::lock_guard lock(mutex_);
    if (!makeStaging(device, size))
        return false;
    const auto number =
        submit(device, [&](VkCommandBuffer commands) { record(commands, staging_.buffer); });
    stagingUse_ = number.value_or(stagingUse_);
    if (!number || !device.submissions.wait(*number))
        return false;
    take(staging_.bytes);
    return true;
}

void Transfers::stop(DeviceState& device) {
    bury(device, staging_);
    if (pool_)
        vkDestroyCommandPool(device.handle, pool_, nullptr);
    pool_ = VK_NULL_HANDLE;
    slots_.clear();
}

} // namespace tarnwick::gpu
