// Which variations of an episode a command line asks for.
#pragma once

#include "TarnwickCore/Variations.h"
#include "programs/Arguments.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct EpisodeVariations {
    std::string_view path; // to name the episode by
    std::string episode;   // its text
    std::uint64_t seed = 0;
    double length = 0;   // seconds of the episode
    double duration = 0; // seconds that each variation is shown
    float spread = 0;    // [0, 1]
    std::vector<Variation> series;
};

// The single operand with --seed, --from, --count, --length, --duration and --spread; what they
// leave out the episode's header says. Throws CommandError.
EpisodeVariations episodeVariationsOf(const Arguments& arguments);

} // namespace tarnwick
