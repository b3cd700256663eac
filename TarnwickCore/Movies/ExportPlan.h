// The stretch of an episode's time that one export covers, in frames.
#pragma once

#include "TarnwickCore/Movies/ExportPreset.h"

#include <cstdint>

namespace tarnwick {

struct ExportPlan {
    // Negative times, and those that are no number, become 0.
    ExportPlan(const ExportPreset& preset, double start, double duration);

    ExportPreset preset;
    double start = 0;    // seconds of the episode, of the first frame
    double duration = 0; // seconds

    bool operator==(const ExportPlan&) const = default;

    // At least 1. `duration` has a number of frames that can be counted.
    std::int64_t frameCount() const;
    // Seconds of the episode, a whole number of frame periods from `start`.
    float time(std::int64_t frame) const;

    // The same of `duration` seconds at `fps`, without a plan.
    static std::int64_t frameCount(double duration, std::int64_t fps);
    // Frames of the crossfade where `duration` seconds loop by `loop` seconds: 0 for none, else at
    // least 1, and at most half of the duration.
    static std::int64_t crossfadeFrames(double loop, double duration, std::int64_t fps);
};

} // namespace tarnwick
