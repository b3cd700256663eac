// tarnwick loop: the length at which an episode loops.
#include "TarnwickPlatform/Pictures/PNG.h"
#include "programs/CommandLine/Output.h"
#include "programs/CommandLine/Seconds.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeChannels.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeLoop.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/LoopSeam.h"
#include "programs/Terminal/JSONText.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>

namespace tarnwick {
namespace {

LoopSearch searchOf(const Arguments& arguments) {
    return {.start = loopStart(arguments.numberOf("--start"), arguments.numberOf("--loop")),
            .around = arguments.numberOf("--around"),
            .range = arguments.numberOf("--range"),
            .fps = arguments.integerOf("--fps")};
}

std::string loopJSON(const FoundLoop& found, const LoopSearch& search) {
    const double frames = found.length * static_cast<double>(search.fps);
    const nlohmann::ordered_json document{{"start", search.start},
                                          {"length", found.length},
                                          {"frames", std::llround(frames)},
                                          {"difference", found.difference}};
    return jsonText(document) + "\n";
}

Status loop(const Arguments& arguments) {
    const std::string_view path = arguments.operand();
    const LoopSearch search = searchOf(arguments);
    const auto seam = Output::of(arguments, "--seam", FileKind::pngPicture);
    const Episode episode = episodeAt(path);
    const Settings settings = episodeSettingsOf(arguments, episode);
    const NamedChannels named = episodeChannelsOf(arguments, episode);
    sayLoopStart(arguments.numberOf("--start"), search.start);
    FoundLoop found;
    Picture shown;
    DrawingDevice().with([&](gpu::Device& device) {
        const auto program = programOf(episode, device);
        const ChannelSources channels = channelSourcesOf(named, device);
        found = findLoop(program, device, settings, search, path, channels);
        if (seam)
            shown = seamOf(program, device, settings, search.start, found.length, channels);
    });
    if (seam)
        seam->write(pngOf(shown));
    if (arguments.has("--json"))
        print(loopJSON(found, search));
    else if (seam)
        seam->say(loopText(found, search.fps) + "\n");
    else
        print(loopText(found, search.fps) + "\n");
    return Status::done;
}

constexpr std::array<Option, 7> searchOptions{{
    {.name = "--around",
     .value = "SECONDS",
     .help = "approximate length of the loop",
     .values = secondsFromZero,
     .isRequired = true},
    {.name = "--range",
     .value = "SECONDS",
     .help = "maximum difference from that length",
     .values = secondsFromZero,
     .byDefault = "0.5"},
    {.name = "--fps",
     .value = "N",
     .help = "frame rate; the loop is a whole number of frames",
     .values = WholeNumber{.least = 1, .most = 1000},
     .byDefault = "30"},
    {.name = "--start",
     .value = "SECONDS",
     .help = "time of the episode at which the loop starts",
     .values = secondsFromZero,
     .byDefault = "0"},
    {.name = "--loop",
     .value = "SECONDS",
     .help = "crossfade of the movie; the loop starts at SECONDS or later",
     .values = secondsFromZero,
     .byDefault = "0"},
    {.name = "--seam",
     .value = "OUT.png",
     .help = "draw the first frame, the frame that follows the last one, and their difference, "
             "eight times as bright; - is standard output",
     .values = FileName{},
     .byDefault = "none"},
    {.name = "--json", .help = "print JSON; times are in seconds"},
}};
constexpr auto loopOptions = joined(searchOptions, std::array{channelOption}, animationOptions);

} // namespace

const Command loopCommand{
    .name = "loop",
    .operands = "EPISODE",
    .summary =
        "Finds the length at which the last frame of the episode is most similar to the first.",
    .options = loopOptions,
    .run = loop};

} // namespace tarnwick
