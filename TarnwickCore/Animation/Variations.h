// Reproducible series of settings near an episode's defaults, drawn from a seed.
#pragma once

#include "TarnwickCore/Params.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct Variation {
    std::int64_t index = 0; // its number in the series
    double start = 0;       // seconds of the episode's time, a multiple of 0.5
    ParamValues values;     // of every varied parameter
    // The two parameters at most that changed most, with their new values: "warp 1.5, hue 0.3".
    // Empty where nothing changed noticeably.
    std::string highlights;

    bool operator==(const Variation&) const = default;
};

struct Variations {
    // The parameters that stay as they are.
    static constexpr std::array<std::string_view, 1> fixed{"volume"};

    // The variations `from` to `from + count - 1`, none where `count` is below 1. A variation
    // follows from the declarations, the seed and its own index: it is the same in every series
    // that it is part of. Indices wrap around. `length`: seconds of the episode. `duration`:
    // seconds that each variation is shown; it starts at 0 where that is no less than the length,
    // or the difference is no finite number. `spread`: how far a value may go from its default
    // towards the ends of its range; clamped to [0, 1], 0 where it is no number. Values are rounded
    // to two decimals; one that comes out as no number, where a range is endless, is its default.
    // Highlights: largest absolute change first, in declaration order where changes are equal;
    // named are those above 0.02. A default that was only rounded has not changed, so that a spread
    // of 0 names nothing.
    static std::vector<Variation> make(std::span<const ParamDecl> params, std::uint64_t seed,
                                       std::int64_t from, std::int64_t count, double length,
                                       double duration, float spread);
};

// "warp 1.5": two decimals, without the zeros at their end and then the point at its end.
std::string settingText(std::string_view name, float value);

} // namespace tarnwick
