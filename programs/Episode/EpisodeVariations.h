// Which variations of an episode a command line asks for.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Animation/Variations.h"
#include "TarnwickCore/Episode/Episode.h"
#include "programs/CommandLine/Arguments.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct EpisodeVariations {
    Episode episode;
    std::uint64_t seed = 0;
    double length = 0;   // seconds of the episode
    double duration = 0; // seconds that each variation is shown
    float spread = 0;    // [0, 1]
    Settings settings;   // that the series is drawn around
    std::vector<Variation> series;

    // The settings with the variation's values.
    Settings settingsOf(const Variation& variation) const;
};

// The single operand with --seed, --from, --count, --length, --duration and --spread; what they
// leave out the episode's header says. The series varies the settings' values, or the defaults;
// parameters with keys follow their keys and are not varied. Throws CommandError.
EpisodeVariations episodeVariationsOf(const Arguments& arguments);

} // namespace tarnwick
