#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/Device.h"

#include <algorithm>

namespace tarnwick::gpu {

namespace {

constexpr std::size_t mostCommandBuffers = 64;

using Resting = std::vector<std::unique_ptr<CommandBufferParts>>;

Resting::iterator oldest(Resting& resting) {
    return std::min_element(resting.begin(), resting.end(), [](const auto& a, const auto& b) {
        return a->submission < b->submission;
    });
}

std::unique_ptr<CommandBufferParts> takeOut(Resting& resting, Resting::iterator at) {
    auto parts = std::move(*at);
    *at = std::move(resting.back());
    resting.pop_back();
    return parts;
}

// Parts that the GPU has finished, else new ones, else the first parts that it finishes.
std::unique_ptr<CommandBufferParts> take(QueueParts& queue) {
    DeviceState& device = *queue.device;
    device.graveyard.collect();
    auto next = oldest(queue.resting);
    if (next != queue.resting.end() && device.submissions.isDone((*next)->submission))
        return takeOut(queue.resting, next);
    if (queue.made < mostCommandBuffers) {
        auto parts = CommandBufferParts::make(queue.device);
        if (parts) {
            ++queue.made;
            queue.resting.reserve(queue.made); // so that returning parts allocates nothing
        }
        return parts;
    }
    if (next == queue.resting.end() || !device.submissions.wait((*next)->submission))
        return nullptr;
    return takeOut(queue.resting, next);
}

} // namespace

CommandQueue::CommandQueue(std::shared_ptr<QueueParts> parts) : parts_(std::move(parts)) {}
CommandQueue::~CommandQueue() = default;

std::optional<CommandBuffer> CommandQueue::commandBuffer() {
    if (parts_->device->submissions.isLost())
        return std::nullopt;
    auto taken = take(*parts_);
    if (!taken)
        return std::nullopt;
    taken->queue = parts_;
    taken->begin();
    return CommandBuffer(std::move(taken));
}

std::unique_ptr<CommandQueue> Device::newCommandQueue(QueueUse use) {
    if (isLost())
        return nullptr;
    auto parts = std::make_shared<QueueParts>();
    parts->device = state_;
    parts->lane = use == QueueUse::beside ? Lane::beside : Lane::pictures;
    return std::make_unique<CommandQueue>(std::move(parts));
}

} // namespace tarnwick::gpu
