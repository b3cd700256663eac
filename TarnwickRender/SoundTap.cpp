#include "TarnwickRender/SoundTap.h"

#include "TarnwickRender/Sound/SoundSamples.h"

#include <algorithm>
#include <vector>

namespace tarnwick {
namespace {

constexpr double rate = ShaderAssembler::sampleRate;

} // namespace

std::unique_ptr<SoundTap> SoundTap::make(std::shared_ptr<const ShaderProgram> program,
                                         gpu::Device& device) {
    if (!program->hasSound())
        return nullptr;
    std::unique_ptr<SoundTap> made(new SoundTap);
    made->program_ = std::move(program);
    made->queue_ = device.newCommandQueue(gpu::QueueUse::beside);
    made->buffer_ = device.newBuffer(AudioAnalyzer::window * soundSampleSize);
    for (auto& spectrum : made->spectra_)
        spectrum = SpectrumTexture::make(device, ShaderAssembler::spectrumBins);
    const bool isMade =
        made->queue_ && made->buffer_ &&
        std::ranges::all_of(made->spectra_, [](auto& one) { return one != nullptr; });
    return isMade ? std::move(made) : nullptr;
}

void SoundTap::prepare(double time, const ParamValues& values) {
    if (job_)
        job_->commands.waitUntilCompleted(); // the next job writes to the same buffer
    job_.reset();
    auto commands = startSound(*program_->parts(), *queue_, *buffer_, time - heard,
                               AudioAnalyzer::window, values);
    if (commands)
        job_.emplace(time, values, std::move(*commands));
}

// Fills the buffer with the samples before `time`. False if the device fails.
bool SoundTap::finish(double time, const ParamValues& values) {
    if (!job_ || job_->time != time || job_->values != values)
        prepare(time, values);
    const bool isDone = job_ && finishSound(job_->commands) != SoundResult::failed;
    job_.reset();
    return isDone;
}

ShaderInputs SoundTap::inputs(double time, const ParamValues& values) {
    const double start = time - heard;
    if (!finish(time, values))
        return ShaderInputs::none();
    std::vector<float> mono = AudioAnalyzer::mono(soundSamples(*buffer_, AudioAnalyzer::window));
    const double before = std::clamp(-start * rate, 0.0, static_cast<double>(mono.size()));
    std::fill_n(mono.begin(), static_cast<std::size_t>(before), 0.0f);
    listener_.listen(time, mono);
    spectrum_ = (spectrum_ + 1) % spectra_.size();
    spectra_[spectrum_]->update(analyzer().spectrum());
    return {.audio = analyzer().bands(), .spectrum = &spectrum().texture()};
}

} // namespace tarnwick
