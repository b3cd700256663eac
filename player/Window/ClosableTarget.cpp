#include "player/Window/ClosableTarget.h"

#include <chrono>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::chrono::seconds longestClose{1};

} // namespace

void SurfaceState::close() {
    state_ = State::closed;
    if (mutex_.try_lock_for(longestClose))
        mutex_.unlock();
}

ClosableTarget::ClosableTarget(std::unique_ptr<FrameTarget> target,
                               std::shared_ptr<SurfaceState> surface)
    : FrameTarget(0), target_(std::move(target)), surface_(std::move(surface)) {}

ClosableTarget::~ClosableTarget() {
    if (surface_->state_ == SurfaceState::State::gone)
        static_cast<void>(target_.release());
}

void ClosableTarget::resize(const PixelSize& size) {
    target_->resize(size);
}

bool ClosableTarget::waitForRoom(double seconds) {
    const std::lock_guard lock(surface_->mutex_);
    return isOpen() && target_->waitForRoom(seconds);
}

const gpu::Texture* ClosableTarget::nextTexture() {
    const std::lock_guard lock(surface_->mutex_);
    return isOpen() ? target_->nextTexture() : nullptr;
}

void ClosableTarget::present(gpu::CommandBuffer commands) {
    const std::lock_guard lock(surface_->mutex_);
    if (isOpen())
        target_->present(std::move(commands));
}

} // namespace tarnwick::player
