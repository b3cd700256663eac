#include "TarnwickGPU/Resources/Transfers.h"

#include "TarnwickGPU/Vulkan/Graveyard.h"
#include "TarnwickGPU/Vulkan/MemoryBarrier.h"
#include "TarnwickGPU/Vulkan/Submissions.h"

#include <algorithm>
#include <bit>

namespace tarnwick::gpu {

namespace {

constexpr VkDeviceSize leastStaging = 65536;
constexpr std::size_t mostSlots = 32; // jobs in flight

} // namespace

Transfers::Slot* Transfers::freeSlot() {
    if (submissions_.isLost())
        return nullptr;
    if (!pool_) {
        const VkCommandPoolCreateInfo info{.sType = VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO,
                                           .flags = VK_COMMAND_POOL_CREATE_RESET_COMMAND_BUFFER_BIT,
                                           .queueFamilyIndex = device_.queueFamily};
        if (vkCreateCommandPool(device_.handle, &info, nullptr, &pool_) != VK_SUCCESS)
            return nullptr;
    }
    auto isFree = [&](const Slot& one) { return submissions_.isDone(one.submission); };
    auto slot = std::ranges::find_if(slots_, isFree);
    if (slot == slots_.end() && slots_.size() >= mostSlots) {
        slot = std::ranges::min_element(slots_, {}, &Slot::submission);
        if (!submissions_.wait(slot->submission))
            return nullptr;
    }
    if (slot != slots_.end())
        return &*slot;
    const VkCommandBufferAllocateInfo info{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO,
                                           .commandPool = pool_,
                                           .level = VK_COMMAND_BUFFER_LEVEL_PRIMARY,
                                           .commandBufferCount = 1};
    Slot made;
    if (vkAllocateCommandBuffers(device_.handle, &info, &made.commands) != VK_SUCCESS)
        return nullptr;
    return &slots_.emplace_back(made);
}

// `slot` is free, or null if out of memory.
std::optional<std::uint64_t> Transfers::submit(const Record& record, Slot* slot) {
    const VkCommandBufferBeginInfo begin{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO,
                                         .flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT};
    if (!slot || vkBeginCommandBuffer(slot->commands, &begin) != VK_SUCCESS)
        return std::nullopt;
    record(slot->commands);
    // Before the commands that follow, and the CPU's reads of staging memory.
    recordMemoryBarrier(slot->commands, VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT,
                        VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT | VK_PIPELINE_STAGE_2_HOST_BIT);
    if (vkEndCommandBuffer(slot->commands) != VK_SUCCESS)
        return std::nullopt;
    const auto number = submissions_.submit(Lane::pictures, slot->commands);
    if (number)
        slot->submission = *number;
    return number;
}

bool Transfers::makeStaging(VkDeviceSize size) {
    if (staging_.size >= size)
        return submissions_.wait(stagingUse_);
    bury(graveyard_, staging_);
    const auto made =
        makeBufferMemory(device_, std::bit_ceil(std::max(size, leastStaging)), MemoryUse::readBack);
    if (made)
        staging_ = *made;
    return made.has_value();
}

bool Transfers::run(const Record& record) {
    std::lock_guard lock(mutex_);
    return submit(record, freeSlot()).has_value();
}

bool Transfers::upload(VkDeviceSize size, const Bytes& fill, const RecordStaged& record) {
    std::lock_guard lock(mutex_);
    if (size <= smallUpload)
        return uploadSmall(fill, record);
    if (!makeStaging(size))
        return false;
    fill(staging_.bytes);
    const auto number =
        submit([&](VkCommandBuffer commands) { record(commands, staging_.buffer); }, freeSlot());
    stagingUse_ = number.value_or(stagingUse_);
    return number.has_value();
}

bool Transfers::uploadSmall(const Bytes& fill, const RecordStaged& record) {
    Slot* slot = freeSlot();
    if (slot && !slot->staging.buffer)
        slot->staging =
            makeBufferMemory(device_, smallUpload, MemoryUse::readBack).value_or(BufferMemory());
    if (!slot || !slot->staging.buffer)
        return false;
    fill(slot->staging.bytes);
    return submit([&](VkCommandBuffer commands) { record(commands, slot->staging.buffer); }, slot)
        .has_value();
}

bool Transfers::readBack(VkDeviceSize size, const RecordStaged& record, const Bytes& take) {
    std::lock_guard lock(mutex_);
    if (!makeStaging(size))
        return false;
    const auto number =
        submit([&](VkCommandBuffer commands) { record(commands, staging_.buffer); }, freeSlot());
    stagingUse_ = number.value_or(stagingUse_);
    if (!number || !submissions_.wait(*number))
        return false;
    take(staging_.bytes);
    return true;
}

void Transfers::stop() {
    bury(graveyard_, staging_);
    for (Slot& slot : slots_)
        bury(graveyard_, slot.staging);
    if (pool_)
        vkDestroyCommandPool(device_.handle, pool_, nullptr);
    pool_ = VK_NULL_HANDLE;
    slots_.clear();
}

} // namespace tarnwick::gpu
