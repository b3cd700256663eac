// The clock of an episode that plays: play, pause, seek, speed, loop.
#pragma once

#include <cstdint>
#include <optional>

namespace tarnwick {

struct LoopRange {
    double start = 0, end = 0; // seconds of the episode; 0 <= start < end

    bool operator==(const LoopRange&) const = default;
};

// A record: each operation returns a new one. `host` is the host clock in seconds. Times of the
// episode are seconds and at least 0.
struct Transport {
    static constexpr std::int64_t framesPerSecond = 60; // of `u.frame` and of single steps
    static constexpr double longestSpeed = 16;          // episode seconds per second, either way

    double time = 0;  // of the episode, at `since`
    double since = 0; // host seconds
    double speed = 1; // [-longestSpeed, longestSpeed]
    bool isPlaying = false;
    std::optional<LoopRange> loop{};

    bool operator==(const Transport&) const = default;

    // While playing, time wraps from the end of the loop to its start (backwards: from the start to
    // the end) if it was before the end (after the start) when playing began.
    double timeAt(double host) const;
    // How often time wrapped since `since`: below 0 backwards. 0 without a loop.
    std::int64_t lapAt(double host) const;
    static std::int64_t frameOf(double time); // the nearest frame, at least 0

    Transport played(double host) const;
    Transport paused(double host) const;
    Transport sought(double to, double host) const;
    // Pauses at the frame `frames` after the one at `host`.
    Transport stepped(std::int64_t frames, double host) const;
    Transport withSpeed(double newSpeed, double host) const;
    // A range that is not 0 <= start < end is ignored.
    Transport withLoop(std::optional<LoopRange> range, double host) const;

  private:
    Transport at(double host) const; // the same clock, counted from `host`
    double movedAt(double host) const;
    bool wrapsAt(double moved) const;
};

} // namespace tarnwick
