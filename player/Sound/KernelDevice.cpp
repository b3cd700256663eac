#include "player/Sound/KernelDevice.h"

#include "TarnwickGPU/QueueBeside.h"

#include <utility>

namespace tarnwick::player {

KernelDevice::KernelDevice(std::shared_ptr<gpu::Device> pictures)
    : pictures_(std::move(pictures)) {}

// The second device has its own connection to the driver: the driver's threads, which have the
// priority of the thread that opens them, and its locks are not those of the pictures.
std::shared_ptr<gpu::Device> KernelDevice::device() {
    if (gpu::hasQueueBeside(*pictures_))
        return pictures_;
    const std::lock_guard lock(mutex_);
    if (!second_ || second_->isLost())
        second_ = gpu::Device::systemDefault();
    return second_;
}

} // namespace tarnwick::player
