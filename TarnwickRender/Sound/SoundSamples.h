// Samples of an episode's sound, evaluated on the GPU.
#pragma once

#include "TarnwickCore/Params.h"
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/Program/ParamBuffer.h"
#include "TarnwickRender/Program/ProgramParts.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tarnwick {

// Bytes of one sample: left and right, each a float in [-1, 1].
inline constexpr std::size_t soundSampleSize = 2 * sizeof(float);

enum class SoundResult : std::uint8_t { done, endedByLoopBudget, failed };

// Writes `count` samples from `start` seconds on, sampleRate a second, into `buffer`, which is
// shared memory. The program has a sound. Blocks.
SoundResult evaluateSound(const ProgramParts& program, gpu::CommandQueue& queue,
                          const gpu::Buffer& buffer, double start, std::uint32_t count,
                          const ParamValues& values);

// The same without waiting: commits the kernel. finishSound() waits for it. Absent if the device
// fails. `rate` is the number of samples in a second of the episode; below 0: backwards.
std::optional<gpu::CommandBuffer> startSound(const ProgramParts& program, gpu::CommandQueue& queue,
                                             const gpu::Buffer& buffer, double start,
                                             std::uint32_t count, const ParamValues& values,
                                             double rate = ShaderAssembler::sampleRate);
// The same with another pipeline of the program's kernel, on the device of `queue`.
std::optional<gpu::CommandBuffer> startSoundKernel(const gpu::ComputePipelineState& kernel,
                                                   gpu::CommandQueue& queue,
                                                   const gpu::Buffer& buffer, double start,
                                                   double rate, std::uint32_t count,
                                                   const ParamBuffer& params);
SoundResult finishSound(gpu::CommandBuffer& commands);

// Runs a kernel with the arguments of the sound kernel, one thread a sample. Blocks.
SoundResult runSoundKernel(const gpu::ComputePipelineState& kernel, gpu::CommandQueue& queue,
                           const gpu::Buffer& buffer, double start, std::uint32_t count,
                           const ParamBuffer& params);

// The first `count` samples in `buffer`: left, right, left, right.
std::span<const float> soundSamples(const gpu::Buffer& buffer, std::size_t count);

} // namespace tarnwick
