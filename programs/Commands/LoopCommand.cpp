// tarnwick loop: the length at which an episode comes back to where it began.
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

double askedStart(const Arguments& arguments) {
    return secondsFromZero(arguments, "--start", 0);
}

LoopSearch searchOf(const Arguments& arguments) {
    LoopSearch search;
    if (!arguments.has("--around"))
        misuse("--around SECONDS is missing: about how long the loop is to be.");
    search.start = loopStart(askedStart(arguments), secondsFromZero(arguments, "--loop", 0));
    search.around = secondsFromZero(arguments, "--around", search.around);
    search.range = secondsFromZero(arguments, "--range", search.range);
    if (const auto given = arguments.value("--fps")) {
        const auto fps = integerOf(*given);
        if (!fps || *fps < 1 || *fps > 1000)
            misuse("--fps wants a whole number from 1 to 1000, not " + quoted(*given) + ".");
        search.fps = *fps;
    }
    return search;
}

Status loop(const Arguments& arguments) {
    const std::string_view path = arguments.operand("episode");
    const LoopSearch search = searchOf(arguments);
    const Episode episode = episodeAt(path);
    const Settings settings = episodeSettingsOf(arguments, episode);
    const auto device = drawingDevice();
    const auto program = programOf(episode, *device);
    sayLoopStart(askedStart(arguments), search.start);
    print(loopText(findLoop(program, *device, settings, search, path), search.fps) + "\n");
    return Status::done;
}

constexpr std::array<Option, 9> loopOptions{{
    {"--around", "SECONDS", "about how long the loop is to be; required"},
    {"--range", "SECONDS", "how much it may be longer or shorter; default: 0.5"},
    {"--fps", "N", "frames a second, of which the loop is to have a whole number; default: 30"},
    {"--start", "SECONDS", "of the episode, where the loop begins; default: 0"},
    {"--loop", "SECONDS", "the movie's crossfade, before which it does not begin; default: 0"},
    setOption,
    keysOption,
    settingsOption,
    noSettingsOption,
}};

} // namespace

const Command loopCommand{.name = "loop",
                          .operands = "EPISODE",
                          .summary = "Finds the length at which the episode comes back closest to "
                                     "where it began.",
                          .options = loopOptions,
                          .run = loop};

} // namespace tarnwick
