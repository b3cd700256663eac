// tarnwick still: one frame of an episode as a PNG file.
#include "TarnwickCore/Text/Numbers.h"
#include "programs/CommandLine/Output.h"
#include "programs/CommandLine/Seconds.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeAudio.h"
#include "programs/Episode/EpisodeChannels.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodePicture.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/EpisodeSound.h"
#include "programs/Episode/EpisodeTimeline.h"

#include <array>
#include <cmath>
#include <limits>

namespace tarnwick {
namespace {

// Default: the time in the episode's header.
double timeOf(const Arguments& arguments, const Episode& episode) {
    return arguments.has("--time") ? arguments.numberOf("--time") : stillTime(episode);
}

std::uint32_t frameOf(const Arguments& arguments, double time) {
    return arguments.has("--frame") ? static_cast<std::uint32_t>(arguments.integerOf("--frame"))
                                    : savedFrame(time);
}

// Whether --hear is given. Throws CommandError if the episode cannot hear its sound.
bool hearsOf(const Arguments& arguments, const Episode& episode) {
    if (!arguments.has("--hear"))
        return false;
    checkSound(episode);
    checkHears(episode, "its sound");
    return true;
}

std::filesystem::path audioOf(const Arguments& arguments, const Episode& episode) {
    if (arguments.has("--audio"))
        checkHears(episode, "a sound file");
    return episodeAudioOf(arguments).file;
}

// The command line, checked before anything is compiled or drawn.
struct Request {
    Output out;
    EpisodeFrame frame;
    NamedChannels channels;
    std::vector<NamedInputs> performed;
    PictureAlpha alpha = PictureAlpha::none;
};

Request requestOf(const Arguments& arguments) {
    Request request{.out = Output::required(arguments, FileKind::pngPicture)};
    EpisodeFrame& frame = request.frame;
    const std::string_view path = arguments.operand();
    if (arguments.has("--alpha"))
        request.alpha = PictureAlpha::premultiplied;
    frame.size = pixelSizeOf(arguments);
    frame.episode = episodeAt(path);
    frame.time = timeOf(arguments, frame.episode);
    frame.frame = frameOf(arguments, frame.time);
    frame.hears = hearsOf(arguments, frame.episode);
    frame.audio = audioOf(arguments, frame.episode);
    request.channels = episodeChannelsOf(arguments, frame.episode);
    frame.timeline = episodeTimelineOf(arguments, frame.episode);
    request.performed = performedChannelsOf(frame.timeline, frame.episode);
    return request;
}

Status still(const Arguments& arguments) {
    Request request = requestOf(arguments);
    const Picture picture = DrawingDevice().with([&](gpu::Device& device) {
        request.frame.channels = channelSourcesOf(request.channels, device);
        request.frame.performed = performedSourcesOf(request.performed, device);
        return pictureOf(request.frame, device);
    });
    request.out.write(pngOf(picture, request.alpha));
    return Status::done;
}

constexpr auto stillOptions = joined(
    std::array<Option, 5>{{
        {.name = "-o",
         .value = "OUT.png",
         .help = "the picture; - is standard output",
         .values = FileName{},
         .isRequired = true},
        {.name = "--time",
         .value = "SECONDS",
         .help = "time of the episode",
         .values = secondsFromZero,
         .byDefault = "@still of the episode, or 10"},
        {.name = "--size",
         .value = "WxH",
         .help = "size of the picture",
         .values = SizeInPixels{},
         .byDefault = "1280x720"},
        {.name = "--alpha", .help = "keep the episode's alpha; without it the picture is opaque"},
        {.name = "--frame",
         .value = "N",
         .help = "number of the frame",
         .values = WholeNumber{.most = std::numeric_limits<std::uint32_t>::max()},
         .byDefault = "30 frames per second of the time"},
    }},
    animationOptions, hearOptions,
    std::array{audioOption("--hear"), channelOption,
               performanceOption("--frame --set --keys --hear")});

} // namespace

const Command stillCommand{.name = "still",
                           .operands = "EPISODE",
                           .summary = "Draws one frame of the episode as a PNG file.",
                           .options = stillOptions,
                           .run = still};

} // namespace tarnwick
