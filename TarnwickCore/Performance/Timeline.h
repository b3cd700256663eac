// What an episode shows over time: its clock, the values of its parameters, and the pointer.
#pragma once

#include "TarnwickCore/Performance/Performance.h"

#include <memory>

namespace tarnwick {

struct TimelineMoment {
    double time = 0; // seconds of the episode
    ParamValues values{};
    PointerPlace pointer{};
};

// One of two: settings, which are fixed values or keys, or a performance. Constant, and cheap to
// copy. Threads may share one.
class Timeline {
  public:
    // Times are seconds of the episode; the pointer stays in the middle. The default are the
    // declared values.
    Timeline(Settings settings = {});
    // Times are seconds of the performance, which is not null. It moves values, keys, the pointer
    // and the episode's clock.
    Timeline(std::shared_ptr<const Performance> performance);

    // Null for settings.
    const std::shared_ptr<const Performance>& performance() const { return performance_; }
    // Of a performance: those at its beginning.
    const Settings& settings() const;
    // A performance in which the settings are played from time 0; a performance itself.
    std::shared_ptr<const Performance> performed() const;

    // The state at `time`. O(changes before it) for a performance; PerformanceCursor and FrameWalk
    // follow one faster.
    TimelineMoment at(double time) const;

  private:
    std::shared_ptr<const Settings> settings_; // null for a performance
    std::shared_ptr<const Performance> performance_;
};

} // namespace tarnwick
