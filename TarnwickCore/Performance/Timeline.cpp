#include "TarnwickCore/Performance/Timeline.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickCore/Performance/PerformanceCursor.h"

#include <utility>

namespace tarnwick {

Timeline::Timeline(Settings settings)
    : settings_(std::make_shared<const Settings>(std::move(settings))) {}

Timeline::Timeline(std::shared_ptr<const Performance> performance)
    : performance_(std::move(performance)) {
    precondition(performance_ != nullptr, "a performed timeline has a performance");
}

const Settings& Timeline::settings() const {
    return performance_ ? performance_->start.settings : *settings_;
}

std::shared_ptr<const Performance> Timeline::performed() const {
    if (performance_)
        return performance_;
    return std::make_shared<const Performance>(
        Performance{.start = {.settings = *settings_, .transport = Transport{}.played(0)},
                    .length = Performance::longest});
}

TimelineMoment Timeline::at(double time) const {
    if (!performance_)
        return {.time = time, .values = settings_->valuesAt(time)};
    PerformanceCursor cursor(performance_);
    const PerformedState& state = cursor.at(time);
    const double shown = state.transport.timeAt(time);
    return {.time = shown, .values = state.settings.valuesAt(shown), .pointer = state.pointer};
}

} // namespace tarnwick
