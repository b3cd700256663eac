#include "TarnwickRender/SoundTap.h"

#include "TarnwickRender/SoundSamples.h"

#include <algorithm>

namespace tarnwick {
namespace {

constexpr double rate = ShaderAssembler::sampleRate;
constexpr double firstElapsed = 1.0 / 60; // seconds

} // namespace

SoundTap::SoundTap() : analyzer_(rate, ShaderAssembler::spectrumBins) {}

std::unique_ptr<SoundTap> SoundTap::make(std::shared_ptr<const ShaderProgram> program,
                                         gpu::Device& device) {
    if (!program->hasSound())
        return nullptr;
    std::unique_ptr<SoundTap> made(new SoundTap);
    made->program_ = std::move(program);
    made->queue_ = device.newCommandQueue();
    made->buffer_ = device.newBuffer(AudioAnalyzer::window * soundSampleSize);
    made->spectrum_ = SpectrumTexture::make(device, ShaderAssembler::spectrumBins);
    return made->queue_ && made->buffer_ && made->spectrum_ ? std::move(made) : nullptr;
}

ShaderInputs SoundTap::inputs(double time, const ParamValues& values) {
    const double start = time - heard;
    if (evaluateSound(*program_, *queue_, *buffer_, start, AudioAnalyzer::window, values) ==
        SoundResult::failed)
        return ShaderInputs::none();
    std::vector<float> mono = AudioAnalyzer::mono(soundSamples(*buffer_, AudioAnalyzer::window));
    const double before = std::clamp(-start * rate, 0.0, static_cast<double>(mono.size()));
    std::fill_n(mono.begin(), static_cast<std::size_t>(before), 0.0f);
    listen(time, mono);
    spectrum_->update(analyzer_.spectrum());
    return {.audio = analyzer_.bands(), .spectrum = &spectrum_->texture()};
}

std::vector<double> SoundTap::timesBefore(double time) {
    constexpr int framesASecond = 60;
    constexpr int framesBefore = 2 * framesASecond; // after which nothing is left of older levels
    std::vector<double> times;
    for (int frame = framesBefore; frame > 0; --frame)
        if (const double before = time - static_cast<double>(frame) / framesASecond; before >= 0)
            times.push_back(before);
    return times;
}

ShaderInputs SoundTap::playedInputs(double time, const ParamValues& values) {
    for (const double before : timesBefore(time))
        inputs(before, values);
    return inputs(time, values);
}

void SoundTap::listen(double time, std::span<const float> mono) {
    if (lastTime_ && time < *lastTime_)
        analyzer_.reset();
    analyzer_.analyse(mono, lastTime_ ? std::max(time - *lastTime_, 0.0) : firstElapsed);
    lastTime_ = time;
}

} // namespace tarnwick
