// Frames drawn off screen and passed on as pictures, for platforms that present no Vulkan surface.
#pragma once

#include "TarnwickRender/Targets/PictureTarget.h"

#include <functional>

namespace tarnwick::player {

class ImageTarget final : public FrameTarget {
  public:
    // `show` is called on the drawing thread with each frame.
    ImageTarget(gpu::Device& device, const PixelSize& size, std::function<void(Picture)> show)
        : FrameTarget(1), pictures_(device, size), show_(std::move(show)) {}

    void resize(const PixelSize& size) override { pictures_.resize(size); }
    const gpu::Texture* nextTexture() override { return pictures_.nextTexture(); }
    void present(gpu::CommandBuffer commands) override {
        pictures_.present(std::move(commands));
        show_(pictures_.lastPicture());
    }

  private:
    PictureTarget pictures_;
    std::function<void(Picture)> show_;
};

} // namespace tarnwick::player
