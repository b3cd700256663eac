// The range of frames that one export covers.
#pragma once

#include "TarnwickCore/Movies/ExportPreset.h"

#include <cstdint>

namespace tarnwick {

struct ExportPlan {
    // Negative times and NaN become 0.
    ExportPlan(const ExportPreset& preset, double start, double duration);

    ExportPreset preset;
    double start = 0;    // time of the first frame, seconds of the episode
    double duration = 0; // seconds

    bool operator==(const ExportPlan&) const = default;

    // At least 1. A duration whose number of frames does not fit into 64 bits is a violation.
    std::int64_t frameCount() const;
    // The time of a frame in seconds of the episode: `start` plus a whole number of frame periods.
    float time(std::int64_t frame) const;

    // The number of frames of `duration` seconds at `fps`.
    static std::int64_t frameCount(double duration, std::int64_t fps);
    // The frames of a crossfade of `loop` seconds at the end of `duration` seconds, limited to half
    // of the duration; at least 1, or 0 if `loop` is not above 0.
    static std::int64_t crossfadeFrames(double loop, double duration, std::int64_t fps);
};

} // namespace tarnwick
