// Times that a dragged key takes: frames, other keys, the playhead, the ends of the loop.
#pragma once

#include "player/Keys/KeySelection.h"

#include <optional>
#include <vector>

namespace tarnwick::player {

double onFrame(double time); // the nearest frame, in seconds; at least 0

struct SnapTargets {
    std::vector<double> times{}; // seconds, ascending

    // The keys that are not selected, and other times.
    static SnapTargets of(const KeyframeTracks& tracks, std::span<const ParamDecl> params,
                          const KeySelection& selection, std::vector<double> others);
};

struct Snapped {
    double time = 0;                // seconds
    std::optional<double> target{}; // the time that it was taken from; absent: a frame

    bool operator==(const Snapped&) const = default;
};

// The nearest target within `reach` seconds, else the nearest frame.
Snapped snapped(double time, const SnapTargets& targets, double reach);

} // namespace tarnwick::player
