#include "programs/MovieExport.h"

#include "programs/CommandError.h"
#include "programs/EpisodePicture.h"
#include "programs/EpisodeSettings.h"
#include "programs/ExportProgress.h"
#include "programs/HeldSignals.h"

#include <cstdio>
#include <string>

namespace tarnwick {
namespace {

void exportInto(const std::filesystem::path& file, std::span<const ExportSegment> segments,
                const ExportPreset& preset, gpu::Device& device, const ExportDetails& details) {
    HeldSignals signals;
    ExportProgress progress;
    const auto goesOn = [&](std::int64_t done, std::int64_t total) {
        progress.show(done, total);
        return !signals.arrived();
    };
    try {
        VideoExporter::export_(segments, preset, device, file, goesOn, details);
    } catch (const ExportError& error) {
        signals.forget(); // the sentence says it
        failure(error.what());
    }
}

} // namespace

void letFollow(ExportSegment& segment, const Settings& settings) {
    segment.values = settings.values;
    segment.valuesAt = valuesOverTime(settings);
}

void letListen(ExportSegment& segment, SoundTap* tap) {
    if (tap == nullptr)
        return;
    segment.inputsAt = [tap, values = segment.soundValues.value_or(segment.values)](double time) {
        return tap->inputs(time, values);
    };
}

void exportMovie(std::span<const ExportSegment> segments, const MovieTarget& target,
                 gpu::Device& device, std::string_view path, ExportDetails details) {
    target.out.writeWith([&](const std::filesystem::path& file) {
        exportMovieFile(segments, target.preset, device, file, path, details);
    });
}

void exportMovieFile(std::span<const ExportSegment> segments, const ExportPreset& preset,
                     gpu::Device& device, const std::filesystem::path& file, std::string_view path,
                     ExportDetails details) {
    ExportNews news;
    details.news = &news;
    exportInto(file, segments, preset, device, details);
    if (news.hitLoopBudget)
        warnOfLoopBudget(path, "movie");
}

} // namespace tarnwick
