// The timeline of an episode, from its documents and the command line.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Performance/Timeline.h"

#include <string_view>

namespace tarnwick {

// The performance in the file of --performance, otherwise the settings (episodeSettingsOf), fitted
// to the episode's parameters. Prints on standard error the remarks of the performance, the
// parameters that do not fit, the inputs that are missing or have changed, and whether another text
// was performed. The files of --channel and --audio are inputs of a performance throughout. Throws
// CommandError on a file that is not a performance.
Timeline episodeTimelineOf(const Arguments& arguments, const Episode& episode);

constexpr Option performanceOption(std::string_view excludes) {
    return {
        .name = "--performance",
        .value = "FILE",
        .help =
            "what was performed in the player: its values, keys, mouse, clock and inputs; times "
            "are seconds of the performance then",
        .values = FileName{},
        .byDefault = "none",
        .excludes = excludes};
}

} // namespace tarnwick
