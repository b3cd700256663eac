// The ends of the loop range, dragged one at a time.
#pragma once

#include "TarnwickCore/Performance/Transport.h"

#include <algorithm>
#include <cstdint>

namespace tarnwick::player {

enum class LoopEnd : std::uint8_t { start, end };

// The range with one end at `time`, in seconds; it stays on its side of the other end.
inline LoopRange withEndAt(LoopRange range, LoopEnd which, double time) {
    constexpr double shortest = 0.05; // seconds
    if (which == LoopEnd::start)
        range.start = std::clamp(time, 0.0, std::max(range.end - shortest, 0.0));
    else
        range.end = std::max(time, range.start + shortest);
    return range;
}

} // namespace tarnwick::player
