// Frames drawn off screen, of which the last can be read.
#pragma once

#include "TarnwickGPU/Resources.h"
#include "TarnwickPlatform/Pictures/Picture.h"
#include "saver/FrameTarget.h"
#include "saver/Geometry.h"

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

    // Blocks until every presented frame is drawn.
    void waitUntilDrawn();

    // The newest presented frame. Blocks until it is drawn. No pixels before the first frame.
    Picture lastPicture();

  private:
    struct Slot {
        std::unique_ptr<gpu::Texture> texture;
        std::optional<gpu::CommandBuffer> commands; // the frame in flight, until it is waited for

        void waitUntilDrawn();
    };

    gpu::Device* device_;
    std::array<Slot, 3> slots_; // as many frames in flight as a window's layer has
    std::size_t next_ = 0;      // the slot that nextTexture gives
    std::optional<std::size_t> last_;
};

} // namespace tarnwick
