#include "TarnwickRender/SoundFileTap.h"

#include <array>
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

SoundFileTap::SoundFileTap(std::unique_ptr<LoopedSound> sound, std::unique_ptr<LevelInputs> levels)
    : sound_(std::move(sound)), levels_(std::move(levels)) {}

std::unique_ptr<SoundFileTap> SoundFileTap::make(const std::filesystem::path& file,
                                                 gpu::Device& device) {
    auto sound = opened(file);
    auto levels = LevelInputs::make(device);
    if (!levels)
        throw InputError(device.info().name + " has no room for the levels of a sound.");
    return std::unique_ptr<SoundFileTap>(new SoundFileTap(std::move(sound), std::move(levels)));
}

ShaderInputs SoundFileTap::inputs(double time, const ParamValues&) {
    std::array<float, std::size_t{2} * AudioAnalyzer::window> stereo{};
    sound_->samples(time - SoundListener::heard, SoundListener::rate, stereo);
    listener_.listen(time, AudioAnalyzer::mono(stereo));
    return levels_->inputs(listener_.analyzer().bands(), listener_.analyzer().spectrum());
}

} // namespace tarnwick
