#include "TarnwickCore/Performance/PerformanceCursor.h"

#include "TarnwickBase/Precondition.h"

#include <utility>

namespace tarnwick {

PerformanceCursor::PerformanceCursor(std::shared_ptr<const Performance> performance)
    : performance_(std::move(performance)) {
    precondition(performance_ != nullptr, "a cursor has a performance");
    state_ = performance_->start;
}

const PerformedState& PerformanceCursor::at(double seconds) {
    const auto& changes = performance_->changes;
    if (made_ > 0 && changes[made_ - 1].time > seconds) {
        state_ = performance_->start;
        made_ = 0;
    }
    for (; made_ < changes.size() && changes[made_].time <= seconds; ++made_)
        apply(changes[made_].what, state_);
    return state_;
}

} // namespace tarnwick
