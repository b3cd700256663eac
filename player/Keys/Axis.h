// A range of times or values on a line of pixels: zooming, panning and the marks of rulers.
#pragma once

#include "player/Keys/KeySelection.h"

#include <string>
#include <vector>

namespace tarnwick::player {

struct Axis {
    Range range{0, 1};
    double begin = 0, end = 1; // pixels of range.from and range.to; end < begin: upwards

    bool operator==(const Axis&) const = default;

    double placeOf(double value) const; // in pixels
    double at(double place) const;      // the value at a pixel
    double pixelsPerUnit() const;       // above 0
};

struct RangeLimits {
    double lowest = 0, highest = 1; // of the ends
    double shortest = 0;            // above 0
};

// Both give a range within the limits.
Range zoomed(const Range& range, double around, double factor, const RangeLimits& limits);
Range panned(const Range& range, double by, const RangeLimits& limits);
// The range with a margin on both sides, a share of its length.
Range framed(const Range& content, double margin, const RangeLimits& limits);

struct RulerMark {
    double place = 0;    // in pixels
    std::string label{}; // empty: a short mark
    bool isWhole = true; // a second; false: a frame within a second

    bool operator==(const RulerMark&) const = default;
};

// Marks of seconds, or of frames if close, with labels at least `distance` pixels apart: "1:05",
// and "30" for the frame after a second.
std::vector<RulerMark> timeMarks(const Axis& axis, double distance);
// Marks at 1, 2 or 5 times a power of ten.
std::vector<RulerMark> valueMarks(const Axis& axis, double distance);

} // namespace tarnwick::player
