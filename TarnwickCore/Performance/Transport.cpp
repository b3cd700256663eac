#include "TarnwickCore/Performance/Transport.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

// `time` within [start, end): wrapped by whole lengths of the range.
double wrapped(double time, const LoopRange& range) {
    const double length = range.end - range.start;
    const double within = std::fmod(time - range.start, length);
    return range.start + (within < 0 ? within + length : within);
}

} // namespace

// The time without the loop.
double Transport::movedAt(double host) const {
    return time + (host - since) * speed;
}

bool Transport::wrapsAt(double moved) const {
    return loop && ((speed > 0 && time < loop->end && moved >= loop->end) ||
                    (speed < 0 && time > loop->start && moved < loop->start));
}

double Transport::timeAt(double host) const {
    if (!isPlaying)
        return time;
    const double moved = movedAt(host);
    return wrapsAt(moved) ? wrapped(moved, *loop) : std::max(moved, 0.0);
}

std::int64_t Transport::lapAt(double host) const {
    const double moved = isPlaying ? movedAt(host) : time;
    if (!isPlaying || !wrapsAt(moved))
        return 0;
    constexpr double most = 9e15;
    const double laps = std::floor((moved - loop->start) / (loop->end - loop->start));
    return static_cast<std::int64_t>(std::clamp(laps, -most, most));
}

std::int64_t Transport::frameOf(double time) {
    return std::max<std::int64_t>(std::llround(time * framesPerSecond), 0);
}

Transport Transport::at(double host) const {
    Transport moved = *this;
    moved.time = timeAt(host);
    moved.since = host;
    return moved;
}

Transport Transport::played(double host) const {
    Transport changed = at(host);
    changed.isPlaying = true;
    return changed;
}

Transport Transport::paused(double host) const {
    Transport changed = at(host);
    changed.isPlaying = false;
    return changed;
}

Transport Transport::sought(double to, double host) const {
    Transport changed = at(host);
    changed.time = std::isfinite(to) ? std::max(to, 0.0) : changed.time;
    return changed;
}

Transport Transport::stepped(std::int64_t frames, double host) const {
    Transport changed = paused(host);
    const std::int64_t frame = std::max<std::int64_t>(frameOf(changed.time) + frames, 0);
    changed.time = static_cast<double>(frame) / framesPerSecond;
    return changed;
}

Transport Transport::withSpeed(double newSpeed, double host) const {
    Transport changed = at(host);
    if (std::isfinite(newSpeed))
        changed.speed = std::clamp(newSpeed, -longestSpeed, longestSpeed);
    return changed;
}

Transport Transport::withLoop(std::optional<LoopRange> range, double host) const {
    if (range && !(range->start >= 0 && range->start < range->end && std::isfinite(range->end)))
        return *this;
    Transport changed = at(host);
    changed.loop = range;
    return changed;
}

} // namespace tarnwick
