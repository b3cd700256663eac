// Evaluates an episode's sound part by part, for a player.
#pragma once

#include "TarnwickRender/ShaderProgram.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace tarnwick {

// Keeps its queue and its buffer between calls. One thread at a time.
class SoundRun {
  public:
    // Null if the program has no sound or the device has no room.
    static std::unique_ptr<SoundRun> make(std::shared_ptr<const ShaderProgram> program,
                                          gpu::Device& device);
    // The same on another device than the program's, of the same hardware. Its samples are equal
    // bit by bit. Blocks while the driver compiles. Null also if the driver refuses the kernel.
    static std::unique_ptr<SoundRun> makeElsewhere(std::shared_ptr<const ShaderProgram> program,
                                                   gpu::Device& other);

    static constexpr std::uint32_t mostSamples = 4 * ShaderAssembler::sampleRate; // of a call

    // `count` samples of interleaved stereo, left first, from `start` seconds on. `rate` is the
    // number of samples in a second of the episode, not 0; below 0: backwards. At sampleRate they
    // are those of AudioRenderer. Absent if the device fails. Blocks. Valid until the next call.
    std::optional<std::span<const float>> samples(double start, double rate, std::uint32_t count,
                                                  const ParamValues& values);

  private:
    SoundRun() = default;

    std::shared_ptr<const ShaderProgram> program_;
    std::unique_ptr<gpu::ComputePipelineState> elsewhere_; // null: the program's own
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Buffer> buffer_; // mostSamples samples
};

} // namespace tarnwick
