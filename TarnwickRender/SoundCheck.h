// Finds where an episode's sound is no number, which the sound kernel's clamping hides.
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
    // Compiles the episode once more, with a kernel behind its own that calls `sound` at the very
    // times of the sound kernel. For an episode that compiles and has a sound; blocks. Throws
    // ShaderError where the kernel cannot be made, null where the rest cannot.
    static std::unique_ptr<SoundCheck> make(const AssembledShader& episode, gpu::Device& device);

    static constexpr std::uint32_t mostSamples = 48000; // of one call

    // The time, in seconds, of the first of `count` samples from `start` seconds on that is NaN or
    // infinite, left or right; those before time 0 are passed over, since nobody hears them. None
    // also where the device fails: evaluating the sound fails as well then. Blocks for one job,
    // about as long as that of the sound itself.
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
