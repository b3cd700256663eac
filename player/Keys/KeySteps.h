// The way from key to key in time.
#pragma once

#include "player/Keys/KeySelection.h"

#include <cstdint>
#include <optional>
#include <span>

namespace tarnwick::player {

enum class Direction : std::uint8_t { back, forward };

// The time of the nearest key of the parameters after or before `time`; absent without one.
std::optional<double> nextKeyTime(const KeyframeTracks& tracks, std::span<const ParamDecl> params,
                                  double time, Direction direction);

// The key after or before `key`: of all parameters in order, each from its first to its last key.
// Without `key`: the first or the last one.
std::optional<KeyPlace> nextKey(const KeyframeTracks& tracks, std::span<const ParamDecl> params,
                                const std::optional<KeyPlace>& key, Direction direction);

// The key of a parameter that is nearest to a time.
std::optional<KeyPlace> nearestKey(const KeyframeTracks& tracks, const ParamDecl& param,
                                   double time);

} // namespace tarnwick::player
