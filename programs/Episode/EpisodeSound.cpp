#include "programs/Episode/EpisodeSound.h"

#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickRender/AudioRenderer.h"
#include "TarnwickRender/ShaderError.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Terminal/ProgressBar.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace tarnwick {
namespace {

double durationOf(const Arguments& arguments) {
    const double duration = arguments.numberOf("--duration");
    if (duration * ShaderAssembler::sampleRate < 0.5)
        misuse("--duration is shorter than a sample: " + shortest(duration) + " s.");
    return duration;
}

} // namespace

EpisodeSound episodeSoundOf(const Arguments& arguments, std::string_view startOption) {
    const std::string_view path = arguments.operand();
    EpisodeSound sound;
    sound.start = arguments.numberOf(startOption);
    sound.duration = durationOf(arguments);
    sound.episode = episodeAt(path);
    checkSound(sound.episode);
    sound.values = episodeSettingsOf(arguments, sound.episode).values;
    return sound;
}

void refuseNotFinite(const EpisodeSound& sound, double time) {
    std::array<char, 64> seconds{};
    // A sample lasts 0.00002 s.
    std::snprintf(seconds.data(), seconds.size(), "%.5f", time);
    std::string digits(seconds.data());
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.ends_with('.'))
        digits.pop_back();
    failure("The sound of " + sound.episode.path + " is not a finite number at " + digits + " s.");
}

std::unique_ptr<SoundCheck> soundCheckOf(const EpisodeSound& sound, gpu::Device& device) {
    const std::string sentence = "The device cannot check the sound of " + sound.episode.path;
    try {
        if (auto check = SoundCheck::make(sound.episode.shader, device))
            return check;
    } catch (const ShaderError& error) {
        failure(sentence + ": " + error.raw);
    }
    failure(sentence + ".");
}

void checkHeard(const EpisodeSound& sound, gpu::Device& device) {
    checkHeard(sound, *soundCheckOf(sound, device));
}

void checkHeard(const EpisodeSound& sound, SoundCheck& check) {
    ProgressBar bar("Second of sound");
    for (double second = 0; second < sound.duration; ++second) {
        bar.show(static_cast<std::int64_t>(second), static_cast<std::int64_t>(sound.duration));
        const double left = (sound.duration - second) * ShaderAssembler::sampleRate;
        const auto count =
            static_cast<std::uint32_t>(std::min<double>(SoundCheck::mostSamples, left));
        if (const auto time = check.firstNotFinite(sound.start + second, count, sound.values))
            refuseNotFinite(sound, *time);
    }
}

void checkSound(const Episode& episode) {
    if (!episode.shader.hasSound)
        failure(episode.path +
                " has no sound: it defines no float2 sound(float t, constant Params& p).");
}

} // namespace tarnwick
