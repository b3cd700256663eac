#include "TarnwickRender/SoundFileTap.h"

#include "TarnwickPlatform/Movie/Reading/LoopedSound.h"

#include <utility>

namespace tarnwick {
namespace {

std::unique_ptr<LoopedSound> opened(const std::filesystem::path& file) {
    try {
        return LoopedSound::open(file);
    } catch (const MovieError& error) {
        throw InputError(error.what());
    }
}

} // namespace

SoundFileTap::SoundFileTap(Samples samples, std::unique_ptr<LevelInputs> levels)
    : samples_(std::move(samples)), levels_(std::move(levels)) {}

std::unique_ptr<SoundFileTap> SoundFileTap::make(const std::filesystem::path& file,
                                                 gpu::Device& device) {
    std::shared_ptr<LoopedSound> sound = opened(file);
    return make(
        [sound](double start, double rate, std::span<float> stereo) {
            sound->samples(start, rate, stereo);
            return true;
        },
        device);
}

std::unique_ptr<SoundFileTap> SoundFileTap::make(Samples samples, gpu::Device& device) {
    auto levels = LevelInputs::make(device);
    if (!levels)
        throw InputError(device.info().name + " has no room for the levels of a sound.");
    return std::unique_ptr<SoundFileTap>(new SoundFileTap(std::move(samples), std::move(levels)));
}

bool SoundFileTap::prepareSound(double time) {
    if (read_ == time)
        return true;
    const bool isRead = samples_(time - SoundListener::heard, SoundListener::rate, stereo_);
    read_ = isRead ? std::optional(time) : std::nullopt;
    return isRead;
}

ShaderInputs SoundFileTap::inputs(double time, const ParamValues&) {
    if (prepareSound(time))
        listener_.listen(time, AudioAnalyzer::mono(stereo_));
    return levels_->inputs(listener_.analyzer().bands(), listener_.analyzer().spectrum());
}

} // namespace tarnwick
