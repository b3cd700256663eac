// Frames shown in an X11 window.
#pragma once

#include "TarnwickGPU/Layer.h"
#include "TarnwickRender/Targets/FrameTarget.h"

#include <memory>
#include <optional>

namespace tarnwick {

namespace gpu {
class Device;
}

class WindowTarget final : public FrameTarget {
  public:
    WindowTarget(gpu::Device& device, std::unique_ptr<gpu::Layer> layer);

    void resize(const PixelSize& size) override;
    bool waitForRoom(double seconds) override;
    const gpu::Texture* nextTexture() override;
    void present(gpu::CommandBuffer commands) override;

  private:
    // Such a frame is presented after it is done, by a command buffer of its own: with CPU drivers,
    // which wait in presenting until the picture is drawn, so that the host does not wait; and
    // while frames are slow, because a command buffer that presents is not divided into pieces.
    void presentDrawn();

    bool isCPU_;
    bool isDrawing_ = false; // drawable_ is committed and not presented
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Layer> layer_;
    std::optional<gpu::Drawable> drawable_; // after its layer, so that it is destroyed first
};

} // namespace tarnwick
