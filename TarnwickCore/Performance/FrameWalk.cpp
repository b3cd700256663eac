#include "TarnwickCore/Performance/FrameWalk.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

FrameWalk::FrameWalk(std::shared_ptr<const Performance> performance)
    : performance_(std::move(performance)) {
    precondition(performance_ != nullptr, "a walk has a performance");
    state_ = performance_->start;
    showState(true, true);
}

// Takes over what the controls have of the state. Unchanged records are shared.
void FrameWalk::showState(bool hasSettings, bool hasInputs) {
    if (hasSettings)
        controls_.settings = std::make_shared<const Settings>(state_.settings);
    if (hasInputs)
        controls_.inputs = std::make_shared<const PerformedInputs>(state_.inputs);
    controls_.pointer = state_.pointer;
    controls_.heard = state_.heard;
}

std::vector<FramePassage> FrameWalk::advance(double seconds) {
    if (!at_ || seconds < *at_)
        begin();
    at_ = seconds;
    const auto& changes = performance_->changes;
    while (made_ < changes.size() && changes[made_].time <= seconds) {
        play(changes[made_].time);
        makeChanges();
    }
    play(seconds);
    return std::exchange(passages_, {});
}

void FrameWalk::begin() {
    state_ = performance_->start;
    showState(true, true);
    made_ = 0;
    lap_ = state_.transport.lapAt(0);
    go(Transport::frameOf(state_.transport.timeAt(0)), Way::start, controls_);
}

// Nothing changes up to `seconds`, so the moments of the passages in between do not matter.
void FrameWalk::play(double seconds) {
    const Transport& transport = state_.transport;
    const std::int64_t lap = transport.lapAt(seconds);
    const std::int64_t to = Transport::frameOf(transport.timeAt(seconds));
    if (std::exchange(lap_, lap) != lap)
        go(transport.speed > 0 ? Transport::frameOf(transport.loop->start) : to, Way::start,
           controls_);
    if (to != frame_)
        go(to, Way::playing, controls_);
}

// The changes of one moment are one: a slider and a seek that were published together.
void FrameWalk::makeChanges() {
    const auto& changes = performance_->changes;
    const double time = changes[made_].time;
    const auto first = changes.begin() + static_cast<std::ptrdiff_t>(made_);
    const auto end = std::find_if(first, changes.end(),
                                  [time](const auto& change) { return change.time != time; });
    const bool mayJump = std::any_of(first, end, [](const Performance::Change& change) {
        return std::holds_alternative<Transport>(change.what);
    });
    const FrameControls before = controls_;
    bool hasSettings = false, hasInputs = false;
    for (auto change = first; change != end; ++change) {
        apply(change->what, state_);
        hasSettings |= std::holds_alternative<Performance::Value>(change->what) ||
                       std::holds_alternative<Performance::Track>(change->what);
        hasInputs |= std::holds_alternative<Performance::Input>(change->what);
    }
    showState(hasSettings, hasInputs);
    made_ += static_cast<std::size_t>(end - first);
    if (!mayJump)
        return;
    lap_ = state_.transport.lapAt(time);
    go(Transport::frameOf(state_.transport.timeAt(time)), Way::jump, before);
}

void FrameWalk::go(std::int64_t to, Way way, const FrameControls& left) {
    const bool startsAgain = way == Way::start || to < frame_;
    if (!startsAgain && to == frame_)
        return;
    if (startsAgain)
        passages_.clear();
    FramePassage& passage = passages_.emplace_back();
    passage.to = to;
    passage.isJump = startsAgain || way == Way::jump;
    passage.reached = controls_;
    if (!startsAgain) {
        passage.from = frame_;
        passage.left = left;
    }
    frame_ = to;
}

} // namespace tarnwick
