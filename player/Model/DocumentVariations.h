// Variations of the settings of a document.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Animation/Variations.h"
#include "TarnwickCore/Episode/Episode.h"

#include <cstdint>
#include <vector>

namespace tarnwick::player {

// The first `count` variations near `settings`. `spread`: as in Variations::make. A parameter with
// keys is not varied.
std::vector<Variation> variationsNear(const Episode& episode, const Settings& settings,
                                      std::uint64_t seed, std::int64_t count, float spread);
// Values over the whole ranges, from a seed.
ParamValues randomValues(const Episode& episode, const Settings& settings, std::uint64_t seed);

// `settings` with other values for the parameters of `values`.
Settings withValues(Settings settings, const ParamValues& values);
// `settings` without the values and keys of the episode's parameters: all have their defaults.
Settings withDefaults(Settings settings, const Episode& episode);

} // namespace tarnwick::player
