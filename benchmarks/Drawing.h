// Times of drawing: our module compared with the twin, on the same device.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "benchmarks/Case.h"
#include "benchmarks/PictureDifference.h"
#include "benchmarks/Turns.h"

#include <cstdint>
#include <memory>

namespace tarnwick::bench {

inline constexpr std::uint32_t drawWidth = 1280, drawHeight = 720; // pixels

struct DrawTime {
    TurnTimes times;
    PictureDifference pictures;
};

class Drawing {
  public:
    // Null without a device.
    static std::unique_ptr<Drawing> make();
    const std::shared_ptr<gpu::Device>& device() const { return device_; }

    // Draws both once to warm up, then alternates, `rounds` times each. Throws gpu::LibraryError,
    // gpu::DeviceError or TwinError.
    DrawTime time(const Case& one, int rounds);

  private:
    using Pipeline = std::unique_ptr<gpu::RenderPipelineState>;
    Drawing(std::shared_ptr<gpu::Device> device, std::unique_ptr<gpu::CommandQueue> queue,
            std::unique_ptr<gpu::Texture> target);
    Pipeline pipeline(const gpu::Function& vertex, const gpu::Function& fragment);
    void draw(const gpu::RenderPipelineState& pipeline, const Case& one);
    std::vector<std::uint8_t> picture(const gpu::RenderPipelineState& pipeline, const Case& one);

    std::shared_ptr<gpu::Device> device_;
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Texture> target_;
};

} // namespace tarnwick::bench
