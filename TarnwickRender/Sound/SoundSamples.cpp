#include "TarnwickRender/Sound/SoundSamples.h"

#include "TarnwickRender/Program/HostFunctions.h"

namespace tarnwick {
namespace {

// As the sound kernel declares it.
struct SoundUniforms {
    float start = 0; // seconds, of the first sample
    float rate = ShaderAssembler::sampleRate;
    std::uint32_t count = 0;
    std::uint32_t pad = 0;
};

} // namespace

std::optional<gpu::CommandBuffer> startSoundKernel(const gpu::ComputePipelineState& kernel,
                                                   gpu::CommandQueue& queue,
                                                   const gpu::Buffer& buffer, double start,
                                                   double rate, std::uint32_t count,
                                                   const ParamBuffer& params) {
    auto commands = queue.commandBuffer();
    auto encoder = commands ? commands->computeCommandEncoder() : std::nullopt;
    if (!encoder)
        return std::nullopt;
    const SoundUniforms uniforms{
        .start = static_cast<float>(start), .rate = static_cast<float>(rate), .count = count};
    encoder->setComputePipelineState(kernel);
    encoder->setBuffer(buffer, 0, 0);
    encoder->setBytes(&uniforms, sizeof uniforms, 1);
    encoder->setBytes(params.data(), params.length(), 2);
    encoder->dispatchThreads({.width = count}, hostThreadgroup(kernel));
    encoder->endEncoding();
    commands->commit();
    return commands;
}

std::optional<gpu::CommandBuffer> startSound(const ProgramParts& program, gpu::CommandQueue& queue,
                                             const gpu::Buffer& buffer, double start,
                                             std::uint32_t count, const ParamValues& values,
                                             double rate) {
    return startSoundKernel(*program.soundPipeline, queue, buffer, start, rate, count,
                            ParamBuffer(program.params, values));
}

SoundResult finishSound(gpu::CommandBuffer& commands) {
    commands.waitUntilCompleted();
    if (commands.status() != gpu::CommandBufferStatus::completed)
        return SoundResult::failed;
    return commands.hitLoopBudget() ? SoundResult::endedByLoopBudget : SoundResult::done;
}

SoundResult evaluateSound(const ProgramParts& program, gpu::CommandQueue& queue,
                          const gpu::Buffer& buffer, double start, std::uint32_t count,
                          const ParamValues& values) {
    return runSoundKernel(*program.soundPipeline, queue, buffer, start, count,
                          ParamBuffer(program.params, values));
}

SoundResult runSoundKernel(const gpu::ComputePipelineState& kernel, gpu::CommandQueue& queue,
                           const gpu::Buffer& buffer, double start, std::uint32_t count,
                           const ParamBuffer& params) {
    auto commands =
        startSoundKernel(kernel, queue, buffer, start, ShaderAssembler::sampleRate, count, params);
    return commands ? finishSound(*commands) : SoundResult::failed;
}

std::span<const float> soundSamples(const gpu::Buffer& buffer, std::size_t count) {
    return {static_cast<const float*>(buffer.contents()), 2 * count};
}

} // namespace tarnwick
