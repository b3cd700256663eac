#include "programs/Movies/VariationsMovie.h"

#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeAudio.h"
#include "programs/Episode/EpisodeChannels.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSound.h"
#include "programs/Movies/ExportOptions.h"
#include "programs/Movies/MovieExport.h"

namespace tarnwick {
namespace {

// Segments, and so chapters, are whole frames long.
VideoChapters chaptersOf(const EpisodeVariations& variations, std::int64_t fps) {
    const auto frames = static_cast<double>(ExportPlan::frameCount(variations.duration, fps));
    return VideoChapters::variations(variations.series, frames / static_cast<double>(fps), 0);
}

std::vector<MovieChapter> movieChaptersOf(const VideoChapters& list) {
    std::vector<MovieChapter> chapters;
    for (const VideoChapters::Chapter& chapter : list.chapters)
        chapters.push_back({.start = chapter.at, .title = chapter.title});
    return chapters;
}

void checkAllHeard(const EpisodeVariations& variations, gpu::Device& device) {
    EpisodeSound sound{.episode = variations.episode, .duration = variations.duration};
    const auto check = soundCheckOf(sound, device);
    for (const Variation& variation : variations.series) {
        sound.values = variations.settingsOf(variation).values;
        sound.start = variation.start;
        checkHeard(sound, *check);
    }
}

} // namespace

VideoChapters exportVariations(const EpisodeVariations& variations, const Arguments& arguments,
                               const MovieTarget& movie) {
    const EpisodeAudio audio = episodeAudioOf(arguments);
    const bool sound = exportSoundOf(arguments, variations.episode) && audio.hasOwn();
    VideoChapters chapters = chaptersOf(variations, movie.preset.fps);
    checkMovieLength(chapters.duration);
    const auto segmentsOn = [&](gpu::Device& device) {
        std::vector<ExportSegment> segments;
        const auto program = programOf(variations.episode, device);
        const auto inputs = frameInputsOf(
            program, device, movie.preset,
            channelSourcesOf(episodeChannelsOf(arguments, variations.episode), device), audio.file);
        for (const Variation& variation : variations.series)
            segments.push_back({.program = program,
                                .timeline = variations.settingsOf(variation),
                                .start = variation.start,
                                .duration = variations.duration,
                                .watermark = arguments.has("--watermark"),
                                .sound = sound,
                                .soundFile = movieFileOf(audio, arguments),
                                .inputs = inputs});
        return segments;
    };
    DrawingDevice device;
    const auto segments = device.with([&](gpu::Device& present) {
        auto made = segmentsOn(present);
        if (sound)
            checkAllHeard(variations, present);
        return made;
    });
    exportMovie(segments, movie, *device, variations.episode.path,
                {.chapters = movieChaptersOf(chapters), .reopen = [&] {
                     auto next = drawingDevice();
                     return ExportStage{next, segmentsOn(*next)};
                 }});
    return chapters;
}

} // namespace tarnwick
