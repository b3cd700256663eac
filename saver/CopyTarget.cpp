#include "saver/CopyTarget.h"

#include "TarnwickRender/TexturePicture.h"

#include <utility>

namespace tarnwick {

static constexpr double always = 1e9; // seconds

void CopyTarget::resize(const PixelSize& size) {
    frames.waitUntilDrawn(always);
    isDrawing_ = false;
    texture_ = device_->newTexture({.format = gpu::PixelFormat::bgra8Unorm,
                                    .width = size.width,
                                    .height = size.height,
                                    .usage = {.renderTarget = true}});
}

bool CopyTarget::waitForRoom(double seconds) {
    if (!frames.waitForRoom(seconds))
        return false;
    if (std::exchange(isDrawing_, false) && !device_->isLost())
        surface_->show(pictureOf(*texture_));
    return true;
}

const gpu::Texture* CopyTarget::nextTexture() {
    waitForRoom(always);
    return texture_.get();
}

void CopyTarget::present(gpu::CommandBuffer commands) {
    commands.commit();
    frames.add(std::move(commands));
    isDrawing_ = true;
}

} // namespace tarnwick
