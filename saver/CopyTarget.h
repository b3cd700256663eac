// Frames that are copied to a surface through memory, where the device cannot present on it.
#pragma once

#include "TarnwickGPU/Resources.h"
#include "TarnwickRender/Targets/FrameTarget.h"
#include "saver/HostSurface.h"

#include <memory>

namespace tarnwick {

// One frame at a time. `device` and `surface` must outlive the target.
class CopyTarget final : public FrameTarget {
  public:
    CopyTarget(gpu::Device& device, HostSurface& surface)
        : FrameTarget(1), device_(&device), surface_(&surface) {}

    void resize(const PixelSize& size) override;
    bool waitForRoom(double seconds) override; // shows the frame that is drawn
    const gpu::Texture* nextTexture() override;
    void present(gpu::CommandBuffer commands) override;

  private:
    gpu::Device* device_;
    HostSurface* surface_;
    std::unique_ptr<gpu::Texture> texture_;
    bool isDrawing_ = false; // the texture is committed and not shown
};

} // namespace tarnwick
