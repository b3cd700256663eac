// The series of variations that is shown for a document, and its snapshots.
#pragma once

#include "TarnwickCore/Animation/Settings.h"

#include <array>
#include <cstdint>
#include <optional>

namespace tarnwick::player {

struct ShownVariations {
    Settings center{};       // the series is near it
    std::uint64_t seed = 1;  // of the series
    std::int64_t count = 0;  // of variations
    float spread = 0.5f;     // as in Variations::make
    std::int64_t chosen = 1; // number of the variation that was taken last, from 1
    std::array<std::optional<ParamValues>, 2> snapshots{}; // A and B
};

// `settings` with keys that lead from snapshot A to B in `seconds`. Both snapshots are there.
Settings morphed(const ShownVariations& shown, Settings settings, double seconds);

} // namespace tarnwick::player
