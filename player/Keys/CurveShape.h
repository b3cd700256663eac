// The points of a parameter's curve over a range of time.
#pragma once

#include "player/Keys/Axis.h"

#include <vector>

namespace tarnwick::player {

struct CurvePoint {
    double x = 0;    // pixels of the time axis
    float value = 0; // within the range of the parameter

    bool operator==(const CurvePoint&) const = default;
};

// The values of KeyframeTracks at each pixel from `from` to `to` on the time axis, and those of the
// keys between two pixels: its least and its greatest. Every value is exact; O(pixels log keys +
// keys in the range). A parameter without keys has `base` at all times.
std::vector<CurvePoint> curvePoints(const KeyframeTracks& tracks, const ParamDecl& param,
                                    float base, const Axis& time, const Range& pixels);

} // namespace tarnwick::player
