// Frames drawn off screen. The last one can be read.
#pragma once

#include "TarnwickGPU/Resources.h"
#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/Targets/FrameTarget.h"
#include "TarnwickBase/PixelSize.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

namespace tarnwick {

namespace gpu {
class Device;
}

class PictureTarget final : public FrameTarget {
  public:
    // `device` must outlive the target.
    PictureTarget(gpu::Device& device, const PixelSize& size);

    void resize(const PixelSize& size) override;
    const gpu::Texture* nextTexture() override;
    void present(gpu::CommandBuffer commands) override;

    // The newest presented frame. Blocks until it is drawn. No pixels before the first frame.
    Picture lastPicture();

  private:
    static constexpr std::size_t count = 3; // frames in flight, as many as a window's layer has

    gpu::Device* device_;
    std::array<std::unique_ptr<gpu::Texture>, count> textures_;
    std::size_t next_ = 0; // index of the texture that nextTexture returns
    std::optional<std::size_t> last_;
};

} // namespace tarnwick
