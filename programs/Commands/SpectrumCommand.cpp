// tarnwick spectrum: the levels and the spectrum of an episode's own sound.
#include "TarnwickPlatform/Pictures/PNG.h"
#include "TarnwickPlatform/Text/SpectrumPicture.h"
#include "TarnwickRender/SoundTap.h"
#include "programs/CommandLine/Output.h"
#include "programs/CommandLine/Seconds.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodePicture.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/EpisodeSound.h"
#include "programs/Terminal/ProgressBar.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace tarnwick {
namespace {

class Listener {
  public:
    Listener(const EpisodeSound& sound, gpu::Device& device) : sound_(sound) {
        tap_ = SoundTap::make(programOf(sound.episode, device), device);
        if (!tap_)
            fail();
        check_ = soundCheckOf(sound, device);
    }
    // The levels at `time`, after the frames before it.
    std::array<float, 4> levels(double time) {
        ProgressBar bar("");
        bar.doing("Listening to " + sound_.episode.path);
        for (const double before : SoundTap::timesBefore(time))
            hear(before);
        return hear(time);
    }
    std::array<float, 4> hear(double time) {
        if (const auto notFinite = check_->firstNotFinite(time - SoundTap::heard,
                                                          AudioAnalyzer::window, sound_.values))
            refuseNotFinite(sound_, *notFinite);
        const ShaderInputs inputs = tap_->inputs(time, sound_.values);
        if (inputs.spectrum == nullptr)
            fail();
        return inputs.audio;
    }
    const std::vector<float>& spectrum() const { return tap_->analyzer().spectrum(); }

  private:
    [[noreturn]] void fail() const {
        failure("The device could not evaluate the sound of " + sound_.episode.path + ".");
    }
    const EpisodeSound& sound_;
    std::unique_ptr<SoundTap> tap_;
    std::unique_ptr<SoundCheck> check_;
};

std::string levelsText(const std::array<float, 4>& levels) {
    constexpr std::array<const char*, 4> names{"low", "mid", "high", "level"};
    std::string text;
    for (std::size_t band = 0; band < levels.size(); ++band) {
        std::array<char, 32> line{};
        std::snprintf(line.data(), line.size(), "%-6s %.3f\n", names[band],
                      static_cast<double>(levels[band]));
        text += line.data();
    }
    return text;
}

// One column of pixels after another, from the sound's start.
SpectrumOverTime spectrumOf(const EpisodeSound& sound, std::uint32_t columns, Listener& listener) {
    SpectrumOverTime spectrum{.bins = ShaderAssembler::spectrumBins,
                              .start = sound.start,
                              .duration = sound.duration,
                              .lowest = AudioAnalyzer::lowestFrequency,
                              .highest = AudioAnalyzer::highestFrequency};
    ProgressBar bar("Column");
    bar.show(0, columns);
    for (std::uint32_t column = 0; column < columns; ++column) {
        listener.hear(sound.start + (column + 0.5) * sound.duration / columns);
        spectrum.values.insert(spectrum.values.end(), listener.spectrum().begin(),
                               listener.spectrum().end());
        bar.show(column + 1, columns);
    }
    return spectrum;
}

SpectrumLayout layoutOf(const Arguments& arguments) {
    const PixelSize size = pixelSizeOf(arguments);
    return {.width = size.width, .height = size.height};
}

Status spectrum(const Arguments& arguments) {
    const auto out = Output::of(arguments, "-o", FileKind::pngPicture);
    const EpisodeSound sound = episodeSoundOf(arguments, "--time");
    const SpectrumLayout layout = layoutOf(arguments);
    std::string levels;
    SpectrumOverTime drawn;
    DrawingDevice().with([&](gpu::Device& device) {
        Listener listener(sound, device);
        levels = levelsText(listener.levels(sound.start));
        if (out)
            drawn = spectrumOf(sound, layout.plotWidth(), listener);
    });
    if (!out) {
        print(levels);
        return Status::done;
    }
    out->write(pngOf(spectrumPicture(drawn, layout)));
    out->say(levels);
    return Status::done;
}

constexpr auto spectrumOptions =
    joined(std::array<Option, 4>{{
               {.name = "--time",
                .value = "SECONDS",
                .help = "time of the episode at which the levels are measured",
                .values = secondsFromZero,
                .isRequired = true},
               {.name = "-o",
                .value = "OUT.png",
                .help = "draw the spectrum from that time on, high frequencies at the top; - is "
                        "standard output",
                .values = FileName{},
                .byDefault = "none"},
               soundDurationOption,
               {.name = "--size",
                .value = "WxH",
                .help = "size of the picture",
                .values = SizeInPixels{.leastWidth = SpectrumLayout::leastWidth,
                                       .leastHeight = SpectrumLayout::leastHeight},
                .byDefault = "1280x720"},
           }},
           valueOptions);

} // namespace

const Command spectrumCommand{
    .name = "spectrum",
    .operands = "EPISODE",
    .summary =
        "Prints the levels that the episode reads from its own sound, and draws the spectrum.",
    .options = spectrumOptions,
    .run = spectrum};

} // namespace tarnwick
