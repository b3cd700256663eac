#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/Commands/Pieces.h"
#include "TarnwickGPU/Device/LayerParts.h"
#include "TarnwickGPU/Layer.h"
#include "TarnwickGPU/Resources/TextureParts.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <utility>

namespace tarnwick::gpu {

namespace {

// A drawable has two semaphores: its first submission waits for one, and the presentation waits for
// the other.
struct DrawableSemaphores {
    std::array<VkSemaphoreSubmitInfo, mostDrawables> waits;
    std::array<VkSemaphore, mostDrawables> signals;
    std::size_t waitCount = 0, signalCount = 0;

    std::span<const VkSemaphoreSubmitInfo> waitInfos() const { return {waits.data(), waitCount}; }
    std::span<const VkSemaphore> signalled() const { return {signals.data(), signalCount}; }
};

DrawableSemaphores drawableSemaphores(const CommandBufferParts& parts) {
    DrawableSemaphores semaphores;
    for (DrawableSlot* slot : parts.touched)
        if (std::exchange(slot->acquireIsPending, false))
            semaphores.waits[semaphores.waitCount++] = {
                .sType = VK_STRUCTURE_TYPE_SEMAPHORE_SUBMIT_INFO,
                .semaphore = slot->layer->acquired[slot->frame],
                .stageMask = VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT |
                             VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT};
    for (DrawableSlot* slot : parts.presented)
        semaphores.signals[semaphores.signalCount++] = slot->presentable;
    return semaphores;
}

// All commands at once.
std::optional<std::uint64_t> submitWhole(CommandBufferParts& parts,
                                         const DrawableSemaphores& semaphores) {
    const VkDevice device = parts.device->record.handle;
    const VkCommandBufferBeginInfo info{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO,
                                        .flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT};
    if (vkResetCommandPool(device, parts.pool, 0) != VK_SUCCESS ||
        vkBeginCommandBuffer(parts.handle, &info) != VK_SUCCESS)
        return std::nullopt;
    recordAll({parts.device->record, parts.handle, *parts.stream});
    if (vkEndCommandBuffer(parts.handle) != VK_SUCCESS)
        return std::nullopt;
    return parts.device->submissions.submit(parts.queue->lane, parts.handle, semaphores.waitInfos(),
                                            semaphores.signalled());
}

// A drawable is presented after the submission that draws it, so its command buffer is not divided.
std::optional<std::uint64_t> submitByCost(CommandBufferParts& parts) {
    const DrawableSemaphores semaphores = drawableSemaphores(parts);
    const auto seconds = knownSeconds(parts.device->record, *parts.stream);
    parts.committedAt.reset();
    if (!parts.presented.empty() || (seconds && *seconds <= wholeSeconds)) {
        parts.committedAt = std::chrono::steady_clock::now();
        parts.knownSeconds = seconds.value_or(0);
        return submitWhole(parts, semaphores);
    }
    auto pieces =
        std::make_shared<Pieces>(parts.device->record, parts.pool, parts.handle, parts.stream);
    return parts.device->submissions.submit(parts.queue->lane, std::move(pieces),
                                            semaphores.waitInfos());
}

bool submit(CommandBufferParts& parts) {
    parts.barriers.flush(*parts.stream);
    if (parts.failed)
        return false;
    const auto number = submitByCost(parts);
    if (!number)
        return false;
    parts.submission = *number;
    for (DrawableSlot* slot : parts.touched)
        slot->lastSubmission = *number;
    return true;
}

// The command buffer is done. If it took much longer than its work did before, the next one with
// this work is submitted in pieces again. The time is an upper bound: the caller may look late, and
// earlier work may have delayed it.
void compareSeconds(CommandBufferParts& parts) {
    const auto begin = std::exchange(parts.committedAt, std::nullopt);
    if (!begin)
        return;
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - *begin;
    if (seconds.count() > 2 * std::max(wholeSeconds, parts.knownSeconds))
        forgetSeconds(*parts.stream);
}

// For a command buffer that is never committed: its drawables are neither drawn into nor shown.
void forgetDrawables(const CommandBufferParts& parts) {
    for (DrawableSlot* slot : parts.touched)
        slot->isDrawn = false;
    for (DrawableSlot* slot : parts.presented)
        giveBack(*slot);
}

} // namespace

CommandBuffer::CommandBuffer(std::unique_ptr<CommandBufferParts> parts)
    : parts_(std::move(parts)) {}
CommandBuffer::CommandBuffer(CommandBuffer&&) noexcept = default;

CommandBuffer& CommandBuffer::operator=(CommandBuffer&& other) noexcept {
    std::swap(parts_, other.parts_); // the destructor of `other` returns our parts to the queue
    return *this;
}

CommandBuffer::~CommandBuffer() {
    if (!parts_)
        return;
    if (parts_->status == CommandBufferStatus::recording)
        forgetDrawables(*parts_);
    const std::shared_ptr<QueueParts> queue = std::move(parts_->queue);
    queue->resting.push_back(std::move(parts_));
}

void CommandBuffer::present(const Drawable& drawable) {
    precondition(parts_->status == CommandBufferStatus::recording, "present() is before commit()",
                 "status", nameOf(parts_->status));
    DrawableSlot& slot = drawable.slot();
    parts_->touch(slot);
    slot.isShown = true;
    parts_->presented.push_back(&slot);
}

void CommandBuffer::commit() {
    precondition(parts_->status == CommandBufferStatus::recording, "commit() is called once",
                 "status", nameOf(parts_->status));
    precondition(parts_->encoding == Encoding::nothing, "every encoder ends before commit()",
                 "open encoder", nameOf(parts_->encoding));
    // A drawable without contents is not yet in the layout for presenting.
    for (DrawableSlot* slot : parts_->presented)
        if (!slot->isDrawn)
            parts_->barriers.enter(
                slot->texture->parts(),
                {VK_IMAGE_LAYOUT_PRESENT_SRC_KHR, VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT, 0},
                Contents::discarded);
    const bool isSubmitted = submit(*parts_);
    parts_->status = isSubmitted ? CommandBufferStatus::committed : CommandBufferStatus::error;
    for (DrawableSlot* slot : parts_->presented)
        isSubmitted ? show(*slot) : giveBack(*slot);
}

void CommandBuffer::waitUntilCompleted() {
    precondition(parts_->status != CommandBufferStatus::recording, "waiting is after commit()");
    if (parts_->status != CommandBufferStatus::committed)
        return;
    const bool isDone = parts_->device->submissions.wait(parts_->submission);
    parts_->status = isDone ? CommandBufferStatus::completed : CommandBufferStatus::error;
    if (isDone)
        compareSeconds(*parts_);
}

bool CommandBuffer::waitUntilCompleted(double seconds) {
    precondition(parts_->status != CommandBufferStatus::recording, "waiting is after commit()");
    constexpr double longest = 1e9; // seconds; in nanoseconds it fits in 64 bits
    const auto nanoseconds =
        static_cast<std::uint64_t>(std::clamp(seconds, 0.0, longest) * 1'000'000'000);
    if (status() == CommandBufferStatus::committed)
        parts_->device->submissions.wait(parts_->submission, nanoseconds);
    return status() != CommandBufferStatus::committed;
}

CommandBufferStatus CommandBuffer::status() const {
    if (parts_->status != CommandBufferStatus::committed)
        return parts_->status;
    Submissions& submissions = parts_->device->submissions;
    const bool isDone = submissions.isDone(parts_->submission);
    if (submissions.isLost())
        return CommandBufferStatus::error;
    if (isDone)
        compareSeconds(*parts_);
    return isDone ? CommandBufferStatus::completed : CommandBufferStatus::committed;
}

void CommandBuffer::abandon() {
    precondition(parts_->status != CommandBufferStatus::recording, "abandoning is after commit()");
    if (parts_->status == CommandBufferStatus::committed)
        parts_->device->submissions.abandon(parts_->submission);
}

bool CommandBuffer::hitLoopBudget() const {
    const CommandBufferStatus now = status();
    return (now == CommandBufferStatus::committed || now == CommandBufferStatus::completed) &&
           parts_->reports.anyIsSet();
}

} // namespace tarnwick::gpu
