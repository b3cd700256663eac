// tarnwick still: one frame of an episode as a PNG file.
#include "TarnwickCore/Text/Numbers.h"
#include "programs/CommandLine/Output.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodePicture.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/EpisodeSound.h"

#include <array>
#include <cmath>
#include <limits>

namespace tarnwick {
namespace {

// Without a time of its own, the one that the episode names.
double timeOf(const Arguments& arguments, const Episode& episode) {
    const auto given = arguments.value("--time");
    if (!given)
        return stillTime(episode);
    const std::optional<double> time = doubleOf(*given);
    if (!time || !std::isfinite(*time) || *time < 0)
        misuse("--time wants a number of seconds from 0 on, not " + quoted(*given) + ".");
    return *time;
}

std::uint32_t frameOf(const Arguments& arguments, double time) {
    constexpr double greatest = std::numeric_limits<std::uint32_t>::max();
    const auto given = arguments.value("--frame");
    if (!given)
        return savedFrame(time);
    const auto frame = integerOf(*given);
    if (!frame || static_cast<double>(*frame) > greatest)
        misuse("--frame wants a whole number from 0 to 4294967295, not " + quoted(*given) + ".");
    return static_cast<std::uint32_t>(*frame);
}

// What --hear says. Throws CommandError for an episode that cannot hear itself.
bool hearsOf(const Arguments& arguments, const Episode& episode) {
    if (!arguments.has(hearOption.name))
        return false;
    checkSound(episode);
    if (!episode.shader.usesInputs)
        failure(episode.path +
                " does not hear its sound: its shade has no parameter of the type Inputs.");
    return true;
}

// All that the command line says, checked before anything is compiled or drawn.
struct Request {
    Output out;
    EpisodeFrame frame;
    PictureAlpha alpha = PictureAlpha::none;
};

Request requestOf(const Arguments& arguments) {
    Request request{.out = Output::wanted(arguments, FileKind::pngPicture)};
    EpisodeFrame& frame = request.frame;
    const std::string_view path = arguments.operand("episode");
    if (arguments.has("--alpha"))
        request.alpha = PictureAlpha::premultiplied;
    frame.size = pixelSizeOf(arguments, {.width = 1280, .height = 720});
    frame.episode = episodeAt(path);
    frame.time = timeOf(arguments, frame.episode);
    frame.frame = frameOf(arguments, frame.time);
    frame.hears = hearsOf(arguments, frame.episode);
    frame.settings = episodeSettingsOf(arguments, frame.episode);
    return request;
}

Status still(const Arguments& arguments) {
    const Request request = requestOf(arguments);
    const Picture picture = pictureOf(request.frame, *drawingDevice());
    request.out.write(pngOf(picture, request.alpha));
    return Status::done;
}

constexpr std::array<Option, 10> stillOptions{{
    {"-o", "OUT.png", "where to write the picture, or - for standard output; required"},
    {"--time", "SECONDS", "of the episode; default: what its @still says, or 10"},
    {"--size", "WxH", "in pixels; default: 1280x720"},
    setOption,
    keysOption,
    settingsOption,
    noSettingsOption,
    hearOption,
    {"--alpha", "", "keep the episode's alpha; default: an opaque picture"},
    {"--frame", "N", "the frame's number; default: 30 a second"},
}};

} // namespace

const Command stillCommand{.name = "still",
                           .operands = "EPISODE",
                           .summary = "Draws one frame of the episode as a PNG file.",
                           .options = stillOptions,
                           .run = still};

} // namespace tarnwick
