// The variations of an episode that a command line selects.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Animation/Variations.h"
#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Episode/Episode.h"
#include "programs/CommandLine/Seconds.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct EpisodeVariations {
    Episode episode;
    std::uint64_t seed = 0;
    double length = 0;   // seconds of the episode
    double duration = 0; // seconds of each variation
    float spread = 0;    // [0, 1]
    Settings settings;   // the centre of the series
    std::vector<Variation> series;

    // The settings with the variation's values.
    Settings settingsOf(const Variation& variation) const;
};

// From the operand, --seed, --from, --count, --length, --duration and --spread; the defaults are in
// the episode's header. The series varies the values of the settings, or the defaults; parameters
// with keys follow their keys and are not varied. Throws CommandError.
EpisodeVariations episodeVariationsOf(const Arguments& arguments);

constexpr std::array<Option, 6> seriesOptions{{
    {.name = "--seed",
     .value = "N",
     .help = "seed from which the series is drawn",
     .values = WholeNumber{},
     .isRequired = true},
    {.name = "--count",
     .value = "N",
     .help = "number of variations",
     .values = WholeNumber{.least = 1, .most = std::numeric_limits<std::int64_t>::max()},
     .byDefault = "those of @variations of the episode"},
    {.name = "--from",
     .value = "N",
     .help = "number of the first variation",
     .values = WholeNumber{.least = std::numeric_limits<std::int64_t>::min()},
     .byDefault = "1"},
    {.name = "--length",
     .value = "SECONDS",
     .help = "length of the episode",
     .values = secondsUpToADay,
     .byDefault = "@length of the episode, or 60"},
    {.name = "--duration",
     .value = "SECONDS",
     .help = "length of each variation",
     .values = secondsUpToADay,
     .byDefault = "@variation of the episode, or 30"},
    {.name = "--spread",
     .value = "X",
     .help = "how far values are from the defaults: 0 not at all, 1 over their whole ranges",
     .values = Number{.most = 1},
     .byDefault = "0.5"},
}};

} // namespace tarnwick
