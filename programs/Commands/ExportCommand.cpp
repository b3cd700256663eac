// tarnwick export: an episode as a movie.
#include "TarnwickCore/Text/Numbers.h"
#include "programs/CommandLine/Seconds.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeAudio.h"
#include "programs/Episode/EpisodeChannels.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeLoop.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/EpisodeSound.h"
#include "programs/Episode/EpisodeTimeline.h"
#include "programs/Movies/ChapterList.h"
#include "programs/Movies/ExportFrames.h"
#include "programs/Movies/ExportOptions.h"
#include "programs/Movies/MovieExport.h"

#include <algorithm>
#include <array>

namespace tarnwick {
namespace {

constexpr double usualDuration = 10; // seconds, of an episode without @length

// The command line, checked before anything is compiled or drawn.
struct Request {
    Episode episode;
    MovieTarget movie;
    Timeline timeline;
    double askedStart = 0, start = 0, duration = 0, crossfade = 0; // seconds
    std::optional<LoopSearch> search;                              // its result is the duration
    std::optional<FrameRange> frames;
    std::vector<MovieChapter> chapters;
    EpisodeAudio audio;
    std::filesystem::path fileTrack; // empty: none
    bool playsInputs = false;
    bool sound = false, watermark = false; // the episode's own sound
    NamedChannels channels;
    std::vector<NamedInputs> performed;
};

double usualDurationOf(const Request& request) {
    if (const Performance* performance = request.timeline.performance().get())
        return performance->length - request.askedStart;
    const bool isFileLonger = request.audio.seconds > request.askedStart; // otherwise it repeats
    return isFileLonger ? request.audio.seconds - request.askedStart
                        : request.episode.length().value_or(usualDuration);
}

double durationOf(const Arguments& arguments, const Request& request) {
    const double duration =
        arguments.has("--duration") ? arguments.numberOf("--duration") : usualDurationOf(request);
    checkMovieLength(duration);
    return duration;
}

double loopSeconds(std::string_view text) {
    requireValue("--find-loop", secondsFromZero, text);
    return doubleOf(text).value();
}

// AROUND or AROUND:RANGE.
std::optional<LoopSearch> searchOf(const Arguments& arguments, const Request& request) {
    const auto given = arguments.value("--find-loop");
    if (!given)
        return std::nullopt;
    LoopSearch search{.fps = request.movie.preset.fps};
    const std::size_t colon = std::min(given->find(':'), given->size());
    search.around = loopSeconds(given->substr(0, colon));
    if (colon < given->size())
        search.range = loopSeconds(given->substr(colon + 1));
    checkMovieLength(search.around + search.range);
    return search;
}

// The crossfade of a movie of `duration` seconds, in seconds.
double crossfadeOf(const Request& request, double duration) {
    const std::int64_t fps = request.movie.preset.fps;
    return static_cast<double>(ExportPlan::crossfadeFrames(request.crossfade, duration, fps)) /
           static_cast<double>(fps);
}

// A search may find any length of its range. The longest has the longest crossfade.
double startOf(const Request& request) {
    const double longest =
        request.search ? request.search->around + request.search->range : request.duration;
    return loopStart(request.askedStart, crossfadeOf(request, longest));
}

Request requestOf(const Arguments& arguments) {
    const std::string_view path = arguments.operand();
    Request request{.movie = movieTargetOf(arguments)};
    request.askedStart = arguments.numberOf("--start");
    request.crossfade = arguments.numberOf("--loop");
    request.episode = episodeAt(path);
    request.audio = episodeAudioOf(arguments);
    request.channels = episodeChannelsOf(arguments, request.episode);
    request.timeline = episodeTimelineOf(arguments, request.episode);
    request.performed = performedChannelsOf(request.timeline, request.episode);
    request.search = searchOf(arguments, request);
    if (!request.search)
        request.duration = durationOf(arguments, request);
    request.start = startOf(request);
    if (request.search)
        request.search->start = request.start;
    if (const auto given = arguments.value("--frames"))
        request.frames = exportFramesOf(*given, request.movie.preset, request.duration);
    request.sound = exportSoundOf(arguments, request.episode) && request.audio.hasOwn();
    request.fileTrack = movieFileOf(request.audio, arguments);
    request.playsInputs = !arguments.has("--audio") && !arguments.has("--no-sound");
    request.watermark = arguments.has("--watermark");
    request.chapters = chapterListAt(arguments.value("--chapters").value_or(""));
    if (!request.search)
        checkChapters(request.chapters, request.duration);
    return request;
}

ExportSegment segmentOf(const Request& request, std::shared_ptr<const ShaderProgram> program) {
    return {.program = std::move(program),
            .timeline = request.timeline,
            .start = request.start,
            .duration = request.duration,
            .watermark = request.watermark,
            .sound = request.sound,
            .soundFile = request.fileTrack,
            .playsInputs = request.playsInputs,
            .loop = request.crossfade,
            .loopSound = true};
}

std::shared_ptr<FrameInputs> inputsOf(const Request& request,
                                      const std::shared_ptr<const ShaderProgram>& program,
                                      gpu::Device& device) {
    const ExportPreset& preset = request.movie.preset;
    return request.timeline.performance()
               ? performedInputsOf(program, device, preset,
                                   performedSourcesOf(request.performed, device))
               : frameInputsOf(program, device, preset, channelSourcesOf(request.channels, device),
                               request.audio.file);
}

// The movie on a device.
ExportSegment segmentOn(gpu::Device& device, const Request& request,
                        const std::shared_ptr<const ShaderProgram>& program) {
    ExportSegment segment = segmentOf(request, program);
    segment.inputs = inputsOf(request, program, device);
    return segment;
}

// Finds the loop, and checks what the device makes of the episode.
ExportSegment firstSegment(gpu::Device& device, Request& request) {
    const auto program = programOf(request.episode, device);
    if (request.search) {
        const FoundLoop found =
            findLoop(program, device, request.timeline, *request.search, request.episode.path,
                     channelSourcesOf(request.channels, device));
        request.duration = found.length;
        checkChapters(request.chapters, request.duration);
        request.movie.out.say("The loop takes " + loopText(found, request.search->fps) + ".\n");
        request.search.reset(); // found, whatever happens to the device
    }
    checkSteps(*program, request.start + request.duration, "movies");
    if (request.sound && !request.timeline.performance() &&
        (!request.frames || request.frames->first == 0)) {
        const double crossfade = crossfadeOf(request, request.duration);
        checkHeard({.episode = request.episode,
                    .values = request.timeline.settings().values,
                    .start = request.start - crossfade,
                    .duration = request.duration + crossfade},
                   device);
    }
    return segmentOn(device, request, program);
}

Status export_(const Arguments& arguments) {
    Request request = requestOf(arguments);
    sayLoopStart(request.askedStart, request.start);
    DrawingDevice device;
    const ExportSegment segment =
        device.with([&](gpu::Device& present) { return firstSegment(present, request); });
    exportMovie({&segment, 1}, request.movie, *device, request.episode.path,
                {.frames = request.frames, .chapters = request.chapters, .reopen = [&request] {
                     auto next = drawingDevice();
                     const auto program = programOf(request.episode, *next);
                     return ExportStage{next, {segmentOn(*next, request, program)}};
                 }});
    return Status::done;
}

constexpr std::array<Option, 7> timeOptions{{
    movieStartOption,
    {.name = "--duration",
     .value = "SECONDS",
     .help = "length of the movie",
     .values = secondsUpToADay,
     .byDefault = "rest of a performance or of the file of --audio; @length of the episode; 10"},
    {.name = "--loop",
     .value = "SECONDS",
     .help = "crossfade the end, sound included, into the seconds before the start, so that the "
             "movie loops; the movie then starts at SECONDS or later",
     .values = secondsFromZero,
     .byDefault = "0"},
    {.name = "--find-loop",
     .value = "AROUND[:RANGE]",
     .help = "use the length that loops best, at most RANGE (default: 0.5) seconds from AROUND",
     .byDefault = "none",
     .excludes = "--duration --frames"},
    {.name = "--frames",
     .value = "A..B",
     .help = "write only the frames from A to B - 1, for tarnwick join; A.. goes to the end",
     .byDefault = "all frames"},
    {.name = "--chapters",
     .value = "FILE.json",
     .help = "chapters of the movie: a list as tarnwick variations --chapters writes",
     .values = FileName{},
     .byDefault = "none",
     .excludes = "--frames"},
    movieSizeOption,
}};
constexpr auto exportOptions =
    joined(std::array{movieOutOption}, movieOptions, timeOptions,
           std::array{audioOption({}), trackOption, channelOption,
                      performanceOption("--loop --find-loop --set --keys")},
           animationOptions);

} // namespace

const Command exportCommand{.name = "export",
                            .operands = "EPISODE",
                            .summary = "Writes the episode as a movie.",
                            .options = exportOptions,
                            .run = export_};

} // namespace tarnwick
