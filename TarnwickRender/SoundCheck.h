// Finds the times at which an episode's sound is NaN or infinite. The sound kernel clamps its
// samples, which hides them.
#pragma once

#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

// One thread at a time.
class SoundCheck {
  public:
    // Compiles the episode again with one more kernel, which calls `sound` at the times of the
    // sound kernel. The episode must compile and have a sound. Blocks. Throws ShaderError if the
    // kernel cannot be made; null if the device has no room.
    static std::unique_ptr<SoundCheck> make(const AssembledShader& episode, gpu::Device& device);

    static constexpr std::uint32_t mostSamples = 48000; // maximum of one call

    // The time, in seconds, of the first of `count` samples from `start` seconds on that is NaN or
    // infinite, left or right. Samples before time 0 are ignored. Absent too if the device fails:
    // evaluating the sound then fails as well. Blocks for one GPU job.
    std::optional<double> firstNotFinite(double start, std::uint32_t count,
                                         const ParamValues& values);

  private:
    SoundCheck() = default;

    std::vector<ParamDecl> params_;
    std::unique_ptr<gpu::ComputePipelineState> kernel_;
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Buffer> marks_; // a word a sample, 0 where it is finite
};

} // namespace tarnwick
