// Frames shown in an X11 window.
#pragma once

#include "TarnwickGPU/Layer.h"
#include "saver/FrameTarget.h"

#include <memory>
#include <optional>

namespace tarnwick {

class WindowTarget final : public FrameTarget {
  public:
    explicit WindowTarget(std::unique_ptr<gpu::Layer> layer) : layer_(std::move(layer)) {}

    void resize(const PixelSize& size) override;
    const gpu::Texture* nextTexture() override;
    void present(gpu::CommandBuffer commands) override;

  private:
    std::unique_ptr<gpu::Layer> layer_;
    std::optional<gpu::Drawable> drawable_; // after its layer: it must go first
};

} // namespace tarnwick
