#include "programs/Service/ShareMedia.h"

#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickCore/Movies/ExportPreset.h"
#include "TarnwickPlatform/Pictures/JPEG.h"
#include "TarnwickRender/SoundTap.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeLoop.h"
#include "programs/Movies/MovieExport.h"
#include "programs/Terminal/ProgressBar.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr double usualLength = 8, range = 2, crossfade = 1; // seconds
constexpr std::size_t largestThumb = 1'000'000;             // bytes
constexpr std::streamsize largestUpload = 25'000'000;       // bytes

ExportPreset presetOf(const PixelSize& size) {
    ExportPreset preset = ExportPreset::site;
    preset.width = size.width;
    preset.height = size.height;
    return preset;
}

ExportSegment segmentOf(const SharedEpisode& shared, gpu::Device& device) {
    ExportSegment segment{.program = shared.program,
                          .timeline = shared.settings,
                          .start =
                              loopStart(stillTime(shared.episode) - usualLength / 2, crossfade),
                          .duration = usualLength,
                          .loop = crossfade};
    const LoopSearch search{.start = segment.start,
                            .around = usualLength,
                            .range = range,
                            .fps = ExportPreset::site.fps};
    if (!shared.program->needsRun())
        segment.duration = findLoop(shared.program, device, segment.timeline, search,
                                    shared.episode.path, shared.channels)
                               .length;
    return segment;
}

} // namespace

std::string sharedLoop(const SharedEpisode& shared, gpu::Device& device) {
    ExportSegment segment = segmentOf(shared, device);
    const ExportPreset preset = presetOf(shared.size);
    segment.inputs = frameInputsOf(shared.program, device, preset, shared.channels, shared.audio);
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "loop.mp4";
    exportMovieFile({&segment, 1}, preset, device, file, shared.episode.path);
    return mediaFile(file.string());
}

std::string sharedThumb(const SharedEpisode& shared, gpu::Device& device) {
    const double time = stillTime(shared.episode);
    const EpisodeFrame frame{.episode = shared.episode,
                             .size = shared.size,
                             .time = time,
                             .frame = savedFrame(time),
                             .timeline = shared.settings,
                             .hears = true, // as in the movie
                             .channels = shared.channels,
                             .audio = shared.audio};
    Picture picture;
    {
        ProgressBar bar("Step");
        StillNews news;
        picture = pictureOf(shared.program, frame, device, news, bar);
    }
    std::string thumb;
    for (int quality = 92; quality > 0; quality -= 15) {
        thumb = jpegOf(picture, quality);
        if (thumb.empty())
            failure("The thumbnail cannot be made: there is not enough memory.");
        if (thumb.size() <= largestThumb)
            break;
    }
    return thumb;
}

std::string mediaFile(std::string_view path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        misuse(std::string(path) + " is not a file that can be read.");
    std::ifstream stream(std::string(path), std::ios::binary);
    std::string bytes(static_cast<std::size_t>(largestUpload + 1), '\0');
    stream.read(bytes.data(), largestUpload + 1);
    if (!stream.is_open() || stream.bad())
        misuse(std::string(path) + " cannot be read: " + std::strerror(errno) + ".");
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

} // namespace tarnwick
