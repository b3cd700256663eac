// Times to draw: our module against the twin's, on the same device.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "benchmarks/Case.h"

#include <cstdint>
#include <memory>

namespace tarnwick::bench {

inline constexpr std::uint32_t drawWidth = 1280, drawHeight = 720; // pixels

struct DrawTime {
    double ours = 0, twin = 0;   // shortest of the rounds, ms a picture
    double ratio = 0;            // of the two shortest
    double medianRatio = 0;      // median of the rounds' ratios
    double processorRatio = 0;   // of the shortest processor times, on a CPU device alone
    double differing = 0;        // share of pixels that differ by more than `tolerance`
    std::uint32_t strongest = 0; // largest difference of any channel, of 255
};

// Pictures agree where at most this share of their pixels differs by more than the tolerance: edges
// fall on either side of a pixel when a last bit differs, and nothing else should.
inline constexpr std::uint32_t tolerance = 2; // of 255, in any channel
inline constexpr double agreeing = 0.002;

class Drawing {
  public:
    // Null without a device.
    static std::unique_ptr<Drawing> make();
    const gpu::DeviceInfo& device() const { return device_->info(); }

    // Draws both warm, then in turns, `rounds` of each. Throws gpu::LibraryError, gpu::DeviceError
    // or TwinError.
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
