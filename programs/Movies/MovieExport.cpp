#include "programs/Movies/MovieExport.h"

#include "TarnwickBase/EndSignals.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodePicture.h"
#include "programs/Terminal/ExportProgress.h"

#include <array>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <string>
#include <utility>

namespace tarnwick {
namespace {

// "rose.mp4: 300 frames, 10 s, 2.4 MB, made in 41 s."
std::string summary(const MovieTarget& target, std::int64_t frames, std::uintmax_t bytes,
                    double seconds) {
    const double length = static_cast<double>(frames) / static_cast<double>(target.preset.fps);
    const auto size = static_cast<double>(bytes);
    std::array<char, 120> text{};
    std::snprintf(text.data(), text.size(), ": %" PRId64 " frames, %.6g s, %.1f %s, made in %s.\n",
                  frames, length, size < 1e6 ? size / 1e3 : size / 1e6, size < 1e6 ? "kB" : "MB",
                  clockText(seconds).c_str());
    return target.out.name() + text.data();
}

} // namespace

std::shared_ptr<FrameInputs> frameInputsOf(const std::shared_ptr<const ShaderProgram>& program,
                                           gpu::Device& device, const ExportPreset& preset,
                                           const ChannelSources& channels,
                                           const std::filesystem::path& soundFile) {
    try {
        return EpisodeInputs::make(
            program, device, preset.width, preset.height,
            {.channels = channels, .hearsOwnSound = true, .soundFile = soundFile});
    } catch (const InputError& error) {
        failure(error.what());
    }
}

std::shared_ptr<FrameInputs> performedInputsOf(const std::shared_ptr<const ShaderProgram>& program,
                                               gpu::Device& device, const ExportPreset& preset,
                                               std::vector<PerformedSource> sources) {
    try {
        return PerformedSources::make(program, device, preset.width, preset.height,
                                      std::move(sources));
    } catch (const InputError& error) {
        failure(error.what());
    }
}

void exportMovie(std::span<const ExportSegment> segments, const MovieTarget& target,
                 gpu::Device& device, std::string_view path, ExportDetails details) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    details.speed = target.speed;
    std::int64_t frames = 0;
    std::uintmax_t bytes = 0;
    target.out.writeWith([&](const std::filesystem::path& file) {
        frames = exportMovieFile(segments, target.preset, device, file, path, details);
        bytes = std::filesystem::file_size(file);
    });
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    target.out.say(summary(target, frames, bytes, seconds));
}

std::int64_t exportMovieFile(std::span<const ExportSegment> segments, const ExportPreset& preset,
                             gpu::Device& device, const std::filesystem::path& file,
                             std::string_view path, ExportDetails details) {
    HeldSignals signals;
    ExportProgress progress;
    ExportNews news;
    details.news = &news;
    bool isLoopTold = false;
    const auto tellOfLoop = [&] {
        if (!news.hitLoopBudget || std::exchange(isLoopTold, true))
            return;
        progress.hide();
        warnOfLoopBudget(path, "movie");
    };
    const auto goesOn = [&](std::int64_t done, std::int64_t total) {
        tellOfLoop();
        progress.show(done, total);
        return !signals.arrived();
    };
    try {
        VideoExporter::export_(segments, preset, device, file, goesOn, details);
        tellOfLoop();
    } catch (const ExportError& error) {
        signals.answer(); // the error reports it
        failure(error.what());
    }
    return progress.total();
}

} // namespace tarnwick
