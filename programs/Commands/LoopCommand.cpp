// tarnwick loop: the length at which an episode loops.
#include "TarnwickCore/Text/Numbers.h"
#include "programs/CommandLine/Seconds.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeLoop.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"

#include <array>

namespace tarnwick {
namespace {

LoopSearch searchOf(const Arguments& arguments) {
    return {.start = loopStart(arguments.numberOf("--start"), arguments.numberOf("--loop")),
            .around = arguments.numberOf("--around"),
            .range = arguments.numberOf("--range"),
            .fps = arguments.integerOf("--fps")};
}

Status loop(const Arguments& arguments) {
    const std::string_view path = arguments.operand();
    const LoopSearch search = searchOf(arguments);
    const Episode episode = episodeAt(path);
    const Settings settings = episodeSettingsOf(arguments, episode);
    const auto device = drawingDevice();
    const auto program = programOf(episode, *device);
    sayLoopStart(arguments.numberOf("--start"), search.start);
    print(loopText(findLoop(program, *device, settings, search, path), search.fps) + "\n");
    return Status::done;
}

constexpr std::array<Option, 5> searchOptions{{
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
}};
constexpr auto loopOptions = joined(searchOptions, animationOptions);

} // namespace

const Command loopCommand{
    .name = "loop",
    .operands = "EPISODE",
    .summary =
        "Finds the length at which the last frame of the episode is most similar to the first.",
    .options = loopOptions,
    .run = loop};

} // namespace tarnwick
