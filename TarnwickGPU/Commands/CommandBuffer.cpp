#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/Device/LayerParts.h"
#include "TarnwickGPU/Layer.h"
#include "TarnwickGPU/Resources/TextureParts.h"

#include <algorithm>
#include <utility>

namespace tarnwick::gpu {

namespace {

// Each drawable comes with a semaphore that its first user waits for, and is presented with one.
struct DrawableSemaphores {
    std::array<VkSemaphoreSubmitInfo, mostDrawables> waits;
    std::array<VkSemaphore, mostDrawables> signals;
    std::size_t waitCount = 0, signalCount = 0;
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

bool submit(CommandBufferParts& parts) {
    parts.barriers.flush(parts.handle);
    if (vkEndCommandBuffer(parts.handle) != VK_SUCCESS || parts.failed)
        return false;
    const DrawableSemaphores semaphores = drawableSemaphores(parts);
    const auto number = parts.device->submissions.submit(
        parts.queue->lane, parts.handle, {semaphores.waits.data(), semaphores.waitCount},
        {semaphores.signals.data(), semaphores.signalCount});
    if (!number)
        return false;
    parts.submission = *number;
    for (DrawableSlot* slot : parts.touched)
        slot->lastSubmission = *number;
    return true;
}

// The command buffer is never committed: what it would have drawn and shown is undone.
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
    std::swap(parts_, other.parts_); // the other one gives ours back
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
    precondition(parts_->status == CommandBufferStatus::recording, "present() precedes commit().");
    DrawableSlot& slot = drawable.slot();
    parts_->touch(slot);
    slot.isShown = true;
    parts_->presented.push_back(&slot);
}

void CommandBuffer::commit() {
    precondition(parts_->status == CommandBufferStatus::recording, "commit() comes once.");
    precondition(parts_->encoding == Encoding::nothing, "Encoders end before commit().");
    // A picture that nobody drew into is still in no layout that can be shown.
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
    precondition(parts_->status != CommandBufferStatus::recording, "Waiting follows commit().");
    if (parts_->status != CommandBufferStatus::committed)
        return;
    parts_->status = parts_->device->submissions.wait(parts_->submission)
                         ? CommandBufferStatus::completed
                         : CommandBufferStatus::error;
}

bool CommandBuffer::waitUntilCompleted(double seconds) {
    precondition(parts_->status != CommandBufferStatus::recording, "Waiting follows commit().");
    constexpr double longest = 1e9; // seconds, which nanoseconds of 64 bits hold
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
    return isDone ? CommandBufferStatus::completed : CommandBufferStatus::committed;
}

bool CommandBuffer::hitLoopBudget() const {
    const CommandBufferStatus now = status();
    return (now == CommandBufferStatus::committed || now == CommandBufferStatus::completed) &&
           parts_->reports.anyIsSet();
}

} // namespace tarnwick::gpu
