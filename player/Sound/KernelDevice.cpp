#include "player/Sound/KernelDevice.h"

#include "TarnwickGPU/QueueBeside.h"
#include "TarnwickPlatform/Sound/SoundPriority.h"

#include <thread>
#include <utility>

namespace tarnwick::player {

KernelDevice::KernelDevice(std::shared_ptr<gpu::Device> pictures)
    : pictures_(std::move(pictures)) {}

// The second device has its own connection to the driver: the driver's threads, which have the
// priority of the thread that opens them, and its locks are not those of the pictures. A frame of
// sound that comes late is heard, so that its threads have a higher priority.
std::shared_ptr<gpu::Device> KernelDevice::device() {
    if (gpu::hasQueueBeside(*pictures_))
        return pictures_;
    const std::lock_guard lock(mutex_);
    if (!second_ || second_->isLost())
        std::thread([this] { // of its own: the caller keeps its priority
            raisePriority();
            second_ = gpu::Device::systemDefault();
        })
            .join();
    return second_;
}

} // namespace tarnwick::player
