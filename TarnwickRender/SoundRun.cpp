#include "TarnwickRender/SoundRun.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickRender/Sound/SoundSamples.h"

namespace tarnwick {

std::unique_ptr<SoundRun> SoundRun::make(std::shared_ptr<const ShaderProgram> program,
                                         gpu::Device& device) {
    if (!program->hasSound())
        return nullptr;
    std::unique_ptr<SoundRun> made(new SoundRun);
    made->program_ = std::move(program);
    made->queue_ = device.newCommandQueue(gpu::QueueUse::beside);
    made->buffer_ = device.newBuffer(mostSamples * soundSampleSize);
    return made->queue_ && made->buffer_ ? std::move(made) : nullptr;
}

std::unique_ptr<SoundRun> SoundRun::makeElsewhere(std::shared_ptr<const ShaderProgram> program,
                                                  gpu::Device& other) {
    std::unique_ptr<SoundRun> made = make(std::move(program), other);
    if (!made)
        return nullptr;
    try {
        const gpu::Function kernel(made->program_->parts()->soundFunction);
        made->elsewhere_ = other.newComputePipelineState(kernel);
    } catch (const gpu::DeviceError&) {
        return nullptr;
    }
    return made;
}

std::optional<std::span<const float>>
SoundRun::samples(double start, double rate, std::uint32_t count, const ParamValues& values) {
    precondition(count <= mostSamples && rate != 0, "a part of a sound fits into its buffer",
                 "samples", count, "rate", rate);
    const ProgramParts& parts = *program_->parts();
    auto commands =
        startSoundKernel(elsewhere_ ? *elsewhere_ : *parts.soundPipeline, *queue_, *buffer_, start,
                         rate, count, ParamBuffer(parts.params, values));
    if (!commands || finishSound(*commands) == SoundResult::failed)
        return std::nullopt;
    return soundSamples(*buffer_, count);
}

} // namespace tarnwick
