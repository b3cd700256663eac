// The performance of an episode that the command line names.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Performance/Performance.h"

#include <memory>
#include <string_view>

namespace tarnwick {

// The performance in the file of --performance, fitted to the episode's parameters; null without
// the option. Prints on standard error the remarks of the performance, the parameters that do not
// fit, and whether another text was performed. Throws CommandError on a file that is not a
// performance.
std::shared_ptr<const Performance> episodePerformanceOf(const Arguments& arguments,
                                                        const Episode& episode);

constexpr Option performanceOption(std::string_view excludes) {
    return {.name = "--performance",
            .value = "FILE",
            .help =
                "what was performed in the player: its values, keys, mouse and clock; times are "
                "seconds of the performance then",
            .values = FileName{},
            .byDefault = "none",
            .excludes = excludes};
}

} // namespace tarnwick
