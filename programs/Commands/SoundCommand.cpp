// tarnwick sound: part of an episode's sound as a WAV file.
#include "TarnwickRender/AudioRenderer.h"
#include "programs/CommandLine/Output.h"
#include "programs/CommandLine/Seconds.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/EpisodeSound.h"
#include "programs/Terminal/ProgressBar.h"

#include <array>

namespace tarnwick {
namespace {

std::vector<float> samplesOf(const EpisodeSound& sound, gpu::Device& device) {
    const auto program = programOf(sound.episode, device);
    ProgressBar bar("Second");
    bar.doing("Compiling the sound of " + sound.episode.path);
    const auto check = soundCheckOf(sound, device);
    SoundNews news;
    news.check = check.get();
    news.advanced = [&](std::int64_t done, std::int64_t total) {
        constexpr std::int64_t second = ShaderAssembler::sampleRate;
        bar.show(done / second, (total + second - 1) / second);
    };
    auto samples =
        AudioRenderer::render(program, device, sound.start, sound.duration, sound.values, &news);
    if (news.notFinite)
        refuseNotFinite(sound, *news.notFinite);
    if (!samples)
        failure("The device could not evaluate the sound of " + sound.episode.path + ".");
    if (news.hitLoopBudget)
        tell("A loop of " + sound.episode.path +
             " ran for too long and was stopped; the sound may be wrong.");
    return *std::move(samples);
}

Status sound(const Arguments& arguments) {
    const Output out = Output::required(arguments, FileKind::wavSound);
    const EpisodeSound sound = episodeSoundOf(arguments, "--start");
    const auto samples =
        DrawingDevice().with([&](gpu::Device& device) { return samplesOf(sound, device); });
    const auto bytes = AudioRenderer::wavData(samples);
    out.write({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    return Status::done;
}

constexpr auto soundOptions = joined(std::array<Option, 3>{{
                                         {.name = "-o",
                                          .value = "OUT.wav",
                                          .help = "the sound; - is standard output",
                                          .values = FileName{},
                                          .isRequired = true},
                                         {.name = "--start",
                                          .value = "SECONDS",
                                          .help = "time of the episode at which the sound starts",
                                          .values = secondsFromZero,
                                          .byDefault = "0"},
                                         soundDurationOption,
                                     }},
                                     valueOptions);

} // namespace

const Command soundCommand{.name = "sound",
                           .operands = "EPISODE",
                           .summary = "Writes the episode's sound as a WAV file of 16-bit stereo "
                                      "at 48 kHz.",
                           .options = soundOptions,
                           .run = sound};

} // namespace tarnwick
