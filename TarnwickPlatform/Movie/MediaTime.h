// A time in a movie as a fraction, so that the times of frames and samples are exact.
#pragma once

#include <cstdint>

namespace tarnwick {

// value / timescale seconds.
struct MediaTime {
    std::int64_t value = 0;
    std::int32_t timescale = 1; // parts of a second, [1, 2^31)

    bool operator==(const MediaTime&) const = default;
};

} // namespace tarnwick
