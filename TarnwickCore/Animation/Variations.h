// Reproducible series of settings near the defaults of an episode, drawn from a seed.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Params.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct Variation {
    std::int64_t index = 0; // its number in the series of the seed
    double start = 0;       // seconds of the episode's time, a multiple of 0.5
    ParamValues values;     // of every varied parameter
    // The two parameters with the greatest changes, with their new values: "warp 1.5, hue 0.3". One
    // or none if fewer changed noticeably.
    std::string highlights;

    bool operator==(const Variation&) const = default;
};

struct Variations {
    // The parameters that are not varied.
    static constexpr std::array<std::string_view, 1> fixed{"volume"};

    // The variations `from` to `from + count - 1`; none if `count` is below 1. A variation depends
    // only on the declarations, the seed and its index, so it is the same in every series. Indices
    // wrap around.
    //
    // `length`: seconds of the episode. `duration`: seconds that each variation is shown. A
    // variation starts at 0 if `duration` is at least `length`, or if their difference is not
    // finite. `spread`: how far a value may move from its default towards the ends of its range;
    // clamped to [0, 1], NaN: 0. Values are rounded to two decimals; NaN, from an infinite range,
    // becomes the default.
    //
    // Highlights: changes above 0.02, in descending order of their absolute size, then in the order
    // of declaration. A default that was only rounded is not a change, so a spread of 0 gives no
    // highlights.
    static std::vector<Variation> make(std::span<const ParamDecl> params, std::uint64_t seed,
                                       std::int64_t from, std::int64_t count, double length,
                                       double duration, float spread);
};

// The declarations that variations near `settings` are made of: with its values as defaults,
// without the parameters that follow keys.
std::vector<ParamDecl> variedParams(std::span<const ParamDecl> params, const Settings& settings);

// "warp 1.5": two decimals, without trailing zeros and point.
std::string settingText(std::string_view name, float value);

} // namespace tarnwick
