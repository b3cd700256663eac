#include "player/Keys/Axis.h"

#include "TarnwickCore/Performance/Transport.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace tarnwick::player {
namespace {

constexpr std::int64_t second = Transport::framesPerSecond; // in frames

struct TimeStep {
    std::int64_t frames;    // between two labels
    std::int64_t marks = 1; // short marks: parts of a step
};
constexpr std::array<TimeStep, 17> timeSteps{{
    {1, 1},
    {2, 2},
    {5, 5},
    {10, 10},
    {15, 3},
    {30, 6},
    {second, 4},
    {2 * second, 4},
    {5 * second, 5},
    {10 * second, 10},
    {30 * second, 6},
    {60 * second, 6},
    {120 * second, 4},
    {300 * second, 5},
    {600 * second, 10},
    {1800 * second, 6},
    {3600 * second, 6},
}};

std::string timeLabel(std::int64_t frame) {
    if (frame % second != 0)
        return std::to_string(frame % second);
    const std::int64_t seconds = frame / second;
    const std::string rest = std::to_string(seconds % 60);
    return std::to_string(seconds / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

std::string valueLabel(double value, double step) {
    std::array<char, 32> text{};
    const int decimals = std::clamp(static_cast<int>(-std::floor(std::log10(step))), 0, 7);
    const double shown = std::abs(value) < step / 2 ? 0 : value;
    std::snprintf(text.data(), text.size(), "%.*f", decimals, shown);
    return text.data();
}

// Keeps the length and moves the ends to the limits, where that is possible.
Range within(Range range, const RangeLimits& limits) {
    const double length =
        std::clamp(range.length(), limits.shortest, limits.highest - limits.lowest);
    range.from = std::clamp(range.from, limits.lowest, limits.highest - length);
    return {range.from, range.from + length};
}

} // namespace

double Axis::placeOf(double value) const {
    return begin + (value - range.from) / range.length() * (end - begin);
}

double Axis::at(double place) const {
    return range.from + (place - begin) / (end - begin) * range.length();
}

double Axis::pixelsPerUnit() const {
    return std::abs(end - begin) / range.length();
}

Range zoomed(const Range& range, double around, double factor, const RangeLimits& limits) {
    const double length =
        std::clamp(range.length() / factor, limits.shortest, limits.highest - limits.lowest);
    const double share = (around - range.from) / range.length();
    const double from = around - share * length;
    return within({from, from + length}, limits);
}

Range panned(const Range& range, double by, const RangeLimits& limits) {
    return within({range.from + by, range.to + by}, limits);
}

Range framed(const Range& content, double margin, const RangeLimits& limits) {
    const double length = std::max(content.length() * (1 + 2 * margin), limits.shortest);
    const double middle = (content.from + content.to) / 2;
    return within({middle - length / 2, middle + length / 2}, limits);
}

std::vector<RulerMark> timeMarks(const Axis& axis, double distance) {
    const double pixelsOfFrame = axis.pixelsPerUnit() / second;
    TimeStep step = timeSteps.back();
    for (const TimeStep& one : timeSteps)
        if (static_cast<double>(one.frames) * pixelsOfFrame >= distance) {
            step = one;
            break;
        }
    while (static_cast<double>(step.frames) * pixelsOfFrame < distance)
        step.frames *= 2;
    const std::int64_t part = step.frames / step.marks;
    std::vector<RulerMark> marks;
    const auto first = static_cast<std::int64_t>(std::floor(axis.range.from * second)) / part;
    const auto last = static_cast<std::int64_t>(std::ceil(axis.range.to * second)) / part;
    for (std::int64_t index = first; index <= last; ++index) {
        const std::int64_t frame = index * part;
        const bool hasLabel = frame % step.frames == 0 && frame >= 0;
        marks.push_back({axis.placeOf(static_cast<double>(frame) / second),
                         hasLabel ? timeLabel(frame) : std::string(), frame % second == 0});
    }
    return marks;
}

std::vector<RulerMark> valueMarks(const Axis& axis, double distance) {
    const double least = distance / axis.pixelsPerUnit();
    const double decade = std::pow(10.0, std::floor(std::log10(least)));
    double step = decade * 10;
    for (const double times : {5.0, 2.0, 1.0})
        if (decade * times >= least)
            step = decade * times;
    std::vector<RulerMark> marks;
    if (!std::isfinite(step) || !(step > 0))
        return marks;
    const double first = std::ceil(axis.range.from / step);
    const auto count = static_cast<int>(std::clamp(axis.range.length() / step + 1, 0.0, 1000.0));
    for (int index = 0; index <= count; ++index) {
        const double value = (first + index) * step;
        if (value <= axis.range.to + step * 1e-6)
            marks.push_back({axis.placeOf(value), valueLabel(value, step), true});
    }
    return marks;
}

} // namespace tarnwick::player
