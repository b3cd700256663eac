// The state of a performance at any time.
#pragma once

#include "TarnwickCore/Performance/Performance.h"

#include <cstddef>
#include <memory>

namespace tarnwick {

// Fast forwards. One thread at a time.
class PerformanceCursor {
  public:
    // `performance` is not null.
    explicit PerformanceCursor(std::shared_ptr<const Performance> performance);

    const Performance& performance() const { return *performance_; }
    const std::shared_ptr<const Performance>& shared() const { return performance_; }

    // The state after all changes up to `seconds` of the performance. Before its beginning: the
    // state at the beginning. Valid until the next call. Going back starts at the beginning.
    const PerformedState& at(double seconds);
    const PerformedState& state() const { return state_; } // of the last call
    // The number of changes up to the time of the last call.
    std::size_t changesMade() const { return made_; }

  private:
    std::shared_ptr<const Performance> performance_;
    PerformedState state_;
    std::size_t made_ = 0;
};

} // namespace tarnwick
