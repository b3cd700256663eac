#include "TarnwickRender/Targets/WindowTarget.h"

#include "TarnwickGPU/Device.h"

#include <utility>

namespace tarnwick {
namespace {

constexpr std::size_t layersDrawables = 3;
constexpr double always = 1e9; // seconds

} // namespace

WindowTarget::WindowTarget(gpu::Device& device, std::unique_ptr<gpu::Layer> layer)
    : FrameTarget(device.info().isCPU ? 1 : layersDrawables), isCPU_(device.info().isCPU),
      queue_(device.newCommandQueue()), layer_(std::move(layer)) {}

void WindowTarget::resize(const PixelSize& size) {
    if (!isDrawing_)
        drawable_.reset();
    layer_->resize(size.width, size.height);
}

bool WindowTarget::waitForRoom(double seconds) {
    if (!(isDrawing_ ? frames.waitUntilDrawn(seconds) : frames.waitForRoom(seconds)))
        return false;
    presentDrawn();
    return true;
}

void WindowTarget::presentDrawn() {
    if (!std::exchange(isDrawing_, false))
        return;
    if (auto commands = queue_ ? queue_->commandBuffer() : std::nullopt) {
        commands->present(*drawable_);
        commands->commit();
    }
    drawable_.reset();
}

const gpu::Texture* WindowTarget::nextTexture() {
    waitForRoom(always);
    drawable_.reset();
    drawable_ = layer_->nextDrawable();
    return drawable_ ? &drawable_->texture() : nullptr;
}

void WindowTarget::present(gpu::CommandBuffer commands) {
    isDrawing_ = drawable_ && (isCPU_ || frames.mayBeSlow());
    if (drawable_ && !isDrawing_)
        commands.present(*drawable_);
    commands.commit();
    frames.add(std::move(commands));
    if (!isDrawing_)
        drawable_.reset();
}

} // namespace tarnwick
